#include "UseRecord.h"

#include "URL.h"

#include <algorithm>
#include <utility>

namespace quillbox {

void RecentUses::addFile(const std::string& pathOrUrl, double when)
{
    // No file system has a path with a NUL byte.
    if (!(when > 0) || pathOrUrl.find('\0') != std::string::npos)
        return;
    if (!pathOrUrl.starts_with('/')) {
        if (const Result<URL> url = URL::fromString(pathOrUrl); url && url->path().starts_with('/'))
            files.push_back({ url->path(), when });
        return;
    }
    const std::size_t last = pathOrUrl.find_last_not_of('/');
    files.push_back({ last == std::string::npos ? "/" : pathOrUrl.substr(0, last + 1), when });
}

bool UseRecord::refresh()
{
    if (std::equal(files_.begin(), files_.end(), stamps_.begin(), stamps_.end(),
                   [](const std::string& path, const FileStamp& stamp) { return FileStamp::of(path) == stamp; }))
        return std::exchange(isReplaced_, false);
    std::vector<FileStamp> stamps;
    for (const std::string& path : files_)
        stamps.push_back(FileStamp::settledOf(path));
    std::optional<RecentUses> uses = read();
    if (!uses) {
        stamps_.clear();
        return std::exchange(isReplaced_, false);
    }
    stamps_ = std::move(stamps);
    uses_ = std::move(*uses);
    isReplaced_ = false;
    return true;
}

void UseRecord::replaceUses(RecentUses uses)
{
    uses_ = std::move(uses);
    isReplaced_ = true;
}

void UseRecord::markFilesRead()
{
    stamps_.clear();
    for (const std::string& path : files_)
        stamps_.push_back(FileStamp::of(path));
}

} // namespace quillbox
