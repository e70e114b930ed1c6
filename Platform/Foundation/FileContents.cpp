#include "FileContents.h"

#include "FileDescriptor.h"
#include "MountInquiry.h"
#include "URL.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>

namespace quillbox {

namespace {

    // Reads `wanted` bytes, or fewer at the file's end. Returns the error number, or 0.
    int readFully(int descriptor, char* bytes, std::size_t wanted, std::size_t& got)
    {
        got = 0;
        while (got < wanted) {
            const ssize_t count = ::read(descriptor, bytes + got, wanted - got);
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                return errno;
            if (count == 0)
                break;
            got += static_cast<std::size_t>(count);
        }
        return 0;
    }

    int writeFully(int descriptor, const Data& bytes)
    {
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                return errno;
            done += static_cast<std::size_t>(count);
        }
        return 0;
    }

    Result<void> makeDirectories(const std::string& directory)
    {
        struct stat status { };
        if (directory.empty() || ::stat(directory.c_str(), &status) == 0)
            return {};
        if (auto above = makeDirectories(std::string(path::deletingLastPathComponent(directory))); !above)
            return above;
        if (::mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST)
            return Error::fromErrno(errno, "couldn't make the directory", directory);
        return {};
    }

    // Until a new file takes the old one's place, its name is the old one's name followed by this and six characters.
    constexpr std::string_view kUnfinished = ".unfinished-";
    constexpr std::string_view kSixCharacters = "XXXXXX";

    // Whoever writes an unfinished file holds a lock on it, which ends with the process. Where a file system knows no
    // locks, no file counts as abandoned.
    bool isAbandoned(int directory, const char* name)
    {
        const FileDescriptor file(::openat(directory, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW));
        struct stat status { };
        return file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)
            && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
    }

    // Removes the unfinished files of processes that were killed while they replaced this file.
    void removeAbandoned(const std::string& directory, const std::string& path)
    {
        const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(directory.c_str()), ::closedir);
        if (!listing)
            return;
        const std::string prefix = std::string(path::lastPathComponent(path)).append(kUnfinished);
        const int descriptor = ::dirfd(listing.get());
        while (const dirent* entry = ::readdir(listing.get())) {
            const std::string_view name = entry->d_name;
            if (name.starts_with(prefix) && name.size() == prefix.size() + kSixCharacters.size()
                && isAbandoned(descriptor, entry->d_name))
                ::unlinkat(descriptor, entry->d_name, 0);
        }
    }

    // Makes and locks the file that is to take the place of the one at `path`. `name` is set to its path.
    FileDescriptor makeUnfinished(const std::string& path, std::string& name)
    {
        constexpr int kAttempts = 10;
        for (int attempt = 0; attempt < kAttempts; ++attempt) {
            name = std::string(path).append(kUnfinished).append(kSixCharacters);
            FileDescriptor file(::mkostemp(name.data(), O_CLOEXEC));
            if (!file)
                return file;
            // Until it is locked, another process may take it for abandoned and remove it.
            const bool isTaken = ::flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
            struct stat status { };
            const bool isRemoved = ::fstat(file.get(), &status) == 0 && status.st_nlink == 0;
            if (!isTaken && !isRemoved)
                return file;
        }
        errno = EAGAIN;
        return {};
    }

    // Some file systems refuse to change a mode. That is no harm where the file gives nobody more than it should.
    bool setMode(int file, mode_t mode)
    {
        if (::fchmod(file, mode) == 0)
            return true;
        const int error = errno;
        struct stat status { };
        if (::fstat(file, &status) == 0 && (status.st_mode & 07777U & ~mode) == 0)
            return true;
        errno = error;
        return false;
    }

    // Returns the descriptor's path without links; empty if the system does not tell.
    std::string pathOfDescriptor(int descriptor)
    {
        char target[PATH_MAX];
        const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
        const ssize_t length = ::readlink(link.c_str(), target, sizeof target);
        return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
    }

    // Writes the bytes, syncs them and renames the temporary file into place. Returns the error number, or 0.
    int fillAndRename(FileDescriptor file, const std::string& temporary, const std::string& path, const Data& bytes,
                      mode_t mode)
    {
        if (const int error = writeFully(file.get(), bytes))
            return error;
        if (!setMode(file.get(), mode) || ::fsync(file.get()) != 0)
            return errno;
        // The lock is held until the file has its final name: without the lock it could be taken for abandoned.
        if (::rename(temporary.c_str(), path.c_str()) != 0)
            return errno;
        return 0;
    }

} // namespace

Result<Data> readFile(const std::string& path, std::size_t maximumSize)
{
    if (const auto answer = askInTime(FileQuestion::Kind::contents, path, maximumSize)) {
        if (answer->error != 0)
            return Error::fromErrno(answer->error, "couldn't read", path);
        return Data(answer->bytes.begin(), answer->bytes.end());
    }
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status { };
    if (!file || ::fstat(file.get(), &status) != 0)
        return Error::fromErrno(errno, "couldn't open", path);
    if (!S_ISREG(status.st_mode))
        return Error::fromErrno(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, "couldn't read", path);
    if (status.st_size < 0 || static_cast<std::uint64_t>(status.st_size) > maximumSize)
        return Error::fromErrno(EFBIG, "couldn't read", path);
    Data bytes(static_cast<std::size_t>(status.st_size));
    std::size_t got = 0;
    if (const int error = readFully(file.get(), reinterpret_cast<char*>(bytes.data()), bytes.size(), got))
        return Error::fromErrno(error, "couldn't read", path);
    bytes.resize(got);
    return bytes;
}

std::string readSmallFile(int directory, const char* path, std::size_t maximumSize)
{
    if (directory == AT_FDCWD) {
        if (const auto answer = askInTime(FileQuestion::Kind::beginning, path, maximumSize))
            return answer->bytes;
    }
    // In an open directory only a link can lead to another mount. A link is therefore not followed here, but asked for
    // by its path, which is checked.
    const int followingNone = directory == AT_FDCWD ? 0 : O_NOFOLLOW;
    const FileDescriptor file(::openat(directory, path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | followingNone));
    if (!file && errno == ELOOP && followingNone != 0) {
        if (const std::string whole = pathOfDescriptor(directory); !whole.empty())
            return readSmallFile(AT_FDCWD, path::appending(whole, path).c_str(), maximumSize);
    }
    struct stat status { };
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0)
        return {};
    std::string text(std::min(maximumSize, static_cast<std::size_t>(status.st_size)), '\0');
    std::size_t got = 0;
    if (readFully(file.get(), text.data(), text.size(), got) != 0)
        return {};
    text.resize(got);
    return text;
}

Result<std::string> followingLinks(const std::string& path)
{
    // This is the kernel's own limit.
    constexpr int kMaximumLinks = 40;
    std::string place = path;
    for (int followed = 0; followed <= kMaximumLinks; ++followed) {
        std::error_code problem;
        const std::string target = std::filesystem::read_symlink(place, problem).string();
        // The place is no link, or nothing is there.
        if (problem == std::errc::invalid_argument || problem == std::errc::no_such_file_or_directory)
            return place;
        if (problem)
            return Error::fromErrno(problem.value(), "couldn't follow the link", place);
        place = target.starts_with('/') ? target : path::appending(path::deletingLastPathComponent(place), target);
    }
    return Error::fromErrno(ELOOP, "couldn't follow the link", path);
}

Result<void> replaceFile(const std::string& path, const Data& bytes, mode_t mode)
{
    const Result<std::string> place = followingLinks(path);
    if (!place)
        return place.error();
    const std::string directory(path::deletingLastPathComponent(*place));
    // If a link leads there, the directory may be missing because its volume is, and is not made.
    if (*place == path) {
        if (auto made = makeDirectories(directory); !made)
            return made;
    }
    removeAbandoned(directory, *place);
    std::string temporary;
    FileDescriptor file = makeUnfinished(*place, temporary);
    if (!file)
        return Error::fromErrno(errno, "couldn't write", *place);
    if (const int error = fillAndRename(std::move(file), temporary, *place, bytes, mode)) {
        ::unlink(temporary.c_str());
        return Error::fromErrno(error, "couldn't write", *place);
    }
    // The new name itself is on the disk only once its directory is synced; some file systems refuse that,
    // and the file has been replaced by then.
    const FileDescriptor parent(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (parent && ::fsync(parent.get()) != 0 && errno == EIO)
        return Error::fromErrno(EIO, "couldn't write", *place);
    return {};
}

} // namespace quillbox
