#include "RecentUseIndex.h"

#include "ApplicationBundles.h"
#include "ApplicationLookup.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace quillbox {

RecentUseIndex::RecentUseIndex(ApplicationBundles& bundles, std::function<void(const Error&)> onError)
    : bundles_(bundles),
      recentlyUsedList_(bundles.environment().dataHome),
      plasmaRecord_(bundles.environment().dataHome),
      gnomeRecord_(bundles.environment().dataHome),
      ownRecord_(bundles.environment().dataHome, std::move(onError))
{
}

std::vector<std::string> RecentUseIndex::pathsLastUsed(Date from, Date until)
{
    bundles_.bringUpToDate();
    if (refreshRecords() || generation_ != bundles_.generation())
        merge();
    const auto first = std::partition_point(uses_.begin(), uses_.end(),
                                            [&](const Use& use) { return Date::sinceUnixEpoch(use.when) < from; });
    const auto last = std::partition_point(first, uses_.end(),
                                           [&](const Use& use) { return Date::sinceUnixEpoch(use.when) <= until; });
    std::vector<std::string> paths;
    paths.reserve(static_cast<std::size_t>(last - first));
    std::transform(first, last, std::back_inserter(paths), [](const Use& use) { return *use.path; });
    return paths;
}

bool RecentUseIndex::refreshRecords()
{
    bool isChanged = false;
    for (UseRecord* record :
         std::initializer_list<UseRecord*> { &recentlyUsedList_, &plasmaRecord_, &gnomeRecord_, &ownRecord_ })
        isChanged = record->refresh() || isChanged;
    return isChanged;
}

void RecentUseIndex::merge()
{
    const ApplicationLookup applications(bundles_.bundles());
    std::unordered_map<std::string_view, Use> newest;
    const auto add = [&](const std::string& path, double when) {
        Use& use = newest.try_emplace(path, Use { when, &path }).first->second;
        use.when = std::max(use.when, when);
    };
    for (const UseRecord* record :
         std::initializer_list<const UseRecord*> { &recentlyUsedList_, &plasmaRecord_, &gnomeRecord_, &ownRecord_ }) {
        for (const FileUse& use : record->uses().files)
            add(use.path, use.when);
        for (const ApplicationUse& use : record->uses().applications) {
            if (const InstalledBundle* application = applications.find(use))
                add(application->path, use.when);
        }
    }
    uses_.clear();
    uses_.reserve(newest.size());
    for (const auto& [path, use] : newest)
        uses_.push_back(use);
    // Uses at the same moment are ordered by path, so that the order is always the same.
    std::sort(uses_.begin(), uses_.end(),
              [](const Use& a, const Use& b) { return a.when != b.when ? a.when < b.when : *a.path < *b.path; });
    generation_ = bundles_.generation();
}

void RecentUseIndex::noteOpened(const std::string& path)
{
    bundles_.bringUpToDate();
    if (const InstalledBundle* application = applicationAt(path))
        ownRecord_.addApplication(application->desktopId);
    else
        ownRecord_.addFile(path);
}

const InstalledBundle* RecentUseIndex::applicationAt(const std::string& path) const
{
    const InstalledBundle* bundle = bundles_.bundleAt(path);
    if (bundle && bundle->kind == BundleKind::application)
        return bundle;
    // An application that was launched by its id is recorded by its desktop entry.
    const auto& all = bundles_.bundles();
    const auto found = std::find_if(all.begin(), all.end(), [&](const InstalledBundle& known) {
        return known.kind == BundleKind::application && known.entryPath == path;
    });
    return found == all.end() ? nullptr : &*found;
}

} // namespace quillbox
