#include "FileManager.h"

#include "FileAnswers.h"
#include "FileDescriptor.h"
#include "HiddenNames.h"
#include "Installed.h"
#include "MountInquiry.h"
#include "PathStatus.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace quillbox {

namespace {

    using EntryKind = DirectoryListing::EntryKind;

    EntryKind kindOfType(unsigned char type)
    {
        switch (type) {
        case DT_REG:
            return EntryKind::file;
        case DT_DIR:
            return EntryKind::directory;
        case DT_LNK:
            return EntryKind::symbolicLink;
        case DT_UNKNOWN:
            return EntryKind::unknown;
        default:
            return EntryKind::other;
        }
    }

    // The system would cut the path at a NUL and so look at another file.
    bool isNameable(const std::string& path)
    {
        return !path.empty() && path.find('\0') == std::string::npos;
    }

    // Calls `take(name, kind)` for every entry but "." and "..". Returns the error number, or 0.
    template <class Take>
    int forEachEntry(int directory, Take take)
    {
        // All listings share one large buffer: fewer calls are cheaper, and its pages need to be touched only once.
        constexpr std::size_t kBufferSize = std::size_t { 256 } << 10;
        static const std::unique_ptr<char[]> buffer(new char[kBufferSize]);
        while (true) {
            const long length = ::syscall(SYS_getdents64, directory, buffer.get(), kBufferSize);
            if (length <= 0)
                return length == 0 ? 0 : errno;
            for (long position = 0; position < length;) {
                const char* record = buffer.get() + position;
                std::uint16_t recordLength = 0;
                std::memcpy(&recordLength, record + offsetof(dirent64, d_reclen), sizeof recordLength);
                const std::string_view name(record + offsetof(dirent64, d_name));
                if (name != "." && name != "..")
                    take(name, kindOfType(static_cast<unsigned char>(record[offsetof(dirent64, d_type)])));
                position += recordLength;
            }
        }
    }

} // namespace

Result<FileKind> FileManager::kind(const std::string& path)
{
    const auto status = isNameable(path) ? statusOfPath(path) : Error::fromErrno(ENOENT, "couldn't look at", path);
    if (!status)
        return status.error();
    return S_ISDIR(status->st_mode) ? FileKind::directory : FileKind::file;
}

bool FileManager::isDirectory(const std::string& path)
{
    const Result<FileKind> found = kind(path);
    return found && *found == FileKind::directory;
}

Result<DirectoryListing> FileManager::contentsOfDirectory(const URL& directory, DirectoryEnumerationOptions options)
{
    const std::string& path = directory.path();
    if (!isNameable(path))
        return Error::fromErrno(ENOENT, "couldn't list", path);
    const bool skipsHidden = options == DirectoryEnumerationOptions::skipsHiddenFiles;
    if (const auto answer = askInTime(FileQuestion::Kind::listing, path, skipsHidden ? 1 : 0))
        return answer::listing(*answer, path);
    const FileDescriptor opened(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened)
        return Error::fromErrno(errno, "couldn't list", path);

    DirectoryListing listing(path);
    listing.setNamesToldHidden(hiddenNames(opened.get()));
    const int error = forEachEntry(opened.get(), [&](std::string_view name, EntryKind kind) {
        if (!skipsHidden || !listing.isHidden(name))
            listing.append(name, kind);
    });
    if (error != 0)
        return Error::fromErrno(error, "couldn't list", path);
    listing.shrinkToFit();

    // Without the right to search it, a directory still lists its names, but none of them can be looked at.
    struct stat status { };
    listing.setIsSearchable(::fstatat(opened.get(), ".", &status, AT_SYMLINK_NOFOLLOW) == 0);
    return listing;
}

Result<std::string> FileManager::destinationOfSymbolicLink(const std::string& path)
{
    if (!isNameable(path))
        return Error::fromErrno(ENOENT, "couldn't read the link", path);
    if (const auto answer = askInTime(FileQuestion::Kind::linkTarget, path))
        return answer::text(*answer, "couldn't read the link", path);
    std::string target(256, '\0');
    while (true) {
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0)
            return Error::fromErrno(errno, "couldn't read the link", path);
        if (static_cast<std::size_t>(length) < target.size()) {
            target.resize(static_cast<std::size_t>(length));
            return target;
        }
        target.resize(target.size() * 4);
    }
}

std::vector<URL> FileManager::urls(SearchPathDirectory directory, SearchPathDomainMask domains)
{
    StandardDirectories* const directories = Installed<StandardDirectories>::current();
    return directories ? directories->urls(directory, domains) : std::vector<URL>();
}

URL FileManager::homeDirectoryForCurrentUser()
{
    if (StandardDirectories* const directories = Installed<StandardDirectories>::current())
        return directories->homeDirectory();
    if (const char* home = std::getenv("HOME"); home && home[0] == '/')
        return URL::fileURLWithPath(home);
    const passwd* entry = ::getpwuid(::getuid());
    return URL::fileURLWithPath(entry && entry->pw_dir && entry->pw_dir[0] == '/' ? entry->pw_dir : "/");
}

FileManager& FileManager::defaultManager()
{
    static FileManager plain;
    FileManager* const installed = Installed<FileManager>::current();
    return installed ? *installed : plain;
}

} // namespace quillbox
