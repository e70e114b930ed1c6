#include "PathStatus.h"

#include "FileAnswers.h"
#include "MountInquiry.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace quillbox {

static constexpr const char* kWhat = "couldn't look at";

Result<struct stat> statusOfPath(const std::string& path, LastLink lastLink)
{
    const bool follows = lastLink == LastLink::followed;
    struct stat status { };
    // Most entries are no links, and for those one look is enough.
    if (MountInquiry* inquiry = Installed<MountInquiry>::current(); inquiry && follows && inquiry->isFreeToAsk(path)) {
        if (::lstat(path.c_str(), &status) != 0)
            return Error::fromErrno(errno, kWhat, path);
        if (!S_ISLNK(status.st_mode))
            return status;
    }
    if (const auto answer = askInTime(FileQuestion::Kind::status, path, follows ? 1 : 0))
        return answer::status(*answer, path);
    if (::fstatat(AT_FDCWD, path.c_str(), &status, follows ? 0 : AT_SYMLINK_NOFOLLOW) != 0)
        return Error::fromErrno(errno, kWhat, path);
    return status;
}

bool isAccessible(const std::string& path, int mode)
{
    if (const auto answer = askInTime(FileQuestion::Kind::access, path, static_cast<std::uint64_t>(mode)))
        return answer->error == 0;
    return ::access(path.c_str(), mode) == 0;
}

} // namespace quillbox
