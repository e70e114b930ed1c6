#include "InstalledBundles.h"

#include "CanonicalPath.h"
#include "PathStatus.h"
#include "URL.h"

namespace quillbox {

static bool isSameFile(const std::string& a, const std::string& b)
{
    const Result<struct stat> statusA = statusOfPath(a);
    const Result<struct stat> statusB = statusOfPath(b);
    return statusA && statusB && statusA->st_dev == statusB->st_dev && statusA->st_ino == statusB->st_ino;
}

InstalledBundles::InstalledBundles(std::vector<InstalledBundle> bundles) : bundles_(std::move(bundles))
{
    for (std::size_t index = 0; index < bundles_.size(); ++index)
        byName_.emplace(path::lastPathComponent(bundles_[index].path), index);
}

const InstalledBundle* InstalledBundles::at(const std::string& path) const
{
    const Result<std::string> canonical = canonicalPath(path);
    if (!canonical)
        return nullptr;
    // The name only selects a few candidates; paths may differ, since the data directory itself may be reached through
    // a link.
    const auto [first, last] = byName_.equal_range(std::string(path::lastPathComponent(*canonical)));
    for (auto candidate = first; candidate != last; ++candidate) {
        const InstalledBundle& bundle = bundles_[candidate->second];
        if (isSameFile(bundle.path, *canonical))
            return &bundle;
    }
    return nullptr;
}

} // namespace quillbox
