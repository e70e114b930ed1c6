#include "FileIdentity.h"

#include "FileAnswers.h"
#include "MountInquiry.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace quillbox {

namespace {

    Result<FileStatus> look(int directory, const char* name, int flags, const std::string& path)
    {
        struct statx status { };
        if (::statx(directory, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC | flags,
                    STATX_TYPE | STATX_INO | STATX_BTIME | STATX_MTIME | STATX_CTIME | STATX_MNT_ID, &status)
            != 0)
            return Error::fromErrno(errno, "couldn't look at", path);
        FileStatus result;
        result.identity.deviceMajor = status.stx_dev_major;
        result.identity.deviceMinor = status.stx_dev_minor;
        result.identity.inode = status.stx_ino;
        const auto time = [&status](unsigned field, const statx_timestamp& stamp) {
            return (status.stx_mask & field) != 0 ? std::optional(FileIdentity::Time { stamp.tv_sec, stamp.tv_nsec })
                                                  : std::nullopt;
        };
        result.identity.birth = time(STATX_BTIME, status.stx_btime);
        result.modified = time(STATX_MTIME, status.stx_mtime);
        result.changed = time(STATX_CTIME, status.stx_ctime);
        result.isDirectory = S_ISDIR(status.stx_mode);
        if ((status.stx_mask & STATX_MNT_ID) != 0)
            result.mountId = status.stx_mnt_id;
        return result;
    }

} // namespace

Result<FileStatus> lookAtFile(const std::string& path)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return Error::fromErrno(ENOENT, "couldn't look at", path);
    if (const auto answer = askInTime(FileQuestion::Kind::identity, path))
        return answer::identity(*answer, path);
    return look(AT_FDCWD, path.c_str(), 0, path);
}

Result<FileStatus> lookAtDescriptor(int descriptor)
{
    return look(descriptor, "", AT_EMPTY_PATH, {});
}

} // namespace quillbox
