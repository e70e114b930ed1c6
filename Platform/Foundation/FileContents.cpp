#include "FileContents.h"

#include "FileDescriptor.h"
#include "URL.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>

namespace quillbox {

namespace {

    // Reads up to `wanted` bytes; less at the file's end. Gives the error number, or 0.
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

    // Writes, syncs and moves the temporary file into place. Gives the error number, or 0.
    int fillAndRename(FileDescriptor file, const std::string& temporary, const std::string& path, const Data& bytes,
                      mode_t mode)
    {
        if (const int error = writeFully(file.get(), bytes))
            return error;
        if (::fchmod(file.get(), mode) != 0 || ::fsync(file.get()) != 0 || file.close() != 0)
            return errno;
        return ::rename(temporary.c_str(), path.c_str()) == 0 ? 0 : errno;
    }

} // namespace

Result<Data> readFile(const std::string& path, std::size_t maximumSize)
{
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
    const FileDescriptor file(::openat(directory, path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
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

Result<void> replaceFile(const std::string& path, const Data& bytes, mode_t mode)
{
    const std::string directory(path::deletingLastPathComponent(path));
    if (auto made = makeDirectories(directory); !made)
        return made;
    std::string temporary = path + ".XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file)
        return Error::fromErrno(errno, "couldn't write", path);
    if (const int error = fillAndRename(std::move(file), temporary, path, bytes, mode)) {
        ::unlink(temporary.c_str());
        return Error::fromErrno(error, "couldn't write", path);
    }
    // The new name itself is on the disk only once its directory is synced; some file systems refuse that,
    // and the file has been replaced by then.
    const FileDescriptor parent(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (parent)
        ::fsync(parent.get());
    return {};
}

} // namespace quillbox
