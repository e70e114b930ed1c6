#include "FileStamp.h"

#include "PathStatus.h"

#include <chrono>

namespace quillbox {

// The time stamps of some file systems change in steps of this size, in nanoseconds.
static constexpr std::int64_t kStampStep = 20'000'000;

FileStamp FileStamp::of(const std::string& path)
{
    const Result<struct stat> status = statusOfPath(path);
    if (!status)
        return {};
    return { status->st_ino, status->st_size, status->st_mtim.tv_sec * 1'000'000'000 + status->st_mtim.tv_nsec };
}

FileStamp FileStamp::settledOf(const std::string& path)
{
    FileStamp stamp = of(path);
    const std::int64_t now =
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
            .count();
    if (stamp.modified > now - kStampStep && stamp.modified <= now + kStampStep)
        stamp.modified = -1;
    return stamp;
}

} // namespace quillbox
