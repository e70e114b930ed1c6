#include "BundleUpdate.h"

#include "BundleName.h"
#include "RegenerableFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace quillbox {

static std::string plainName(const PlannedBundle& planned)
{
    return bundleName(planned.title, {}, extensionOf(planned.kind));
}

// Joins two texts into one key. NUL is in no path and no id.
static std::string key(std::string_view place, std::string_view what)
{
    return std::string(place).append(1, '\0').append(what);
}

BundleUpdate::BundleUpdate(FoundBundles found, const std::vector<PlannedBundle>& plan,
                           const std::vector<std::string>& directories, const UnreadSources& unread)
    : found_(std::move(found.bundles)),
      taken_(found.others.begin(), found.others.end())
{
    for (std::size_t index = 0; index < plan.size(); ++index)
        targets_.push_back({ &plan[index], directories[index] });
    keepUncertain(unread);
}

BundleStore::Outcome BundleUpdate::run()
{
    matchByName();
    matchWithinDirectories();
    matchAcrossDirectories();
    assignNames();
    removeUnwanted();
    moveOutOfTheWay();
    for (const Target& target : targets_)
        bring(target);
    return std::move(outcome_);
}

// Keeps bundles whose entries can't be read now, and drops planned ones that would take their place.
void BundleUpdate::keepUncertain(const UnreadSources& unread)
{
    if (unread.errors().empty())
        return;
    std::set<std::string> keptIds;
    for (std::size_t index = 0; index < found_.size(); ++index) {
        const FoundBundle& bundle = found_[index];
        if (!unread.mayHold(bundle.entryPath) || bundle.name.starts_with(kUnfinishedPrefix))
            continue;
        matched_.insert(index);
        taken_.insert(bundle.path());
        keptIds.insert(bundle.desktopId);
        outcome_.bundles.push_back(
            { bundle.kind, bundle.path(), bundle.desktopId, bundle.entryPath, bundle.program, bundle.title });
    }
    std::erase_if(targets_, [&](const Target& target) { return keptIds.contains(target.planned->desktopId); });
}

void BundleUpdate::match(Target& target, std::size_t index)
{
    target.found = index;
    matched_.insert(index);
}

void BundleUpdate::matchFirstFree(Target& target, Candidates& candidates, const std::string& key)
{
    const auto list = candidates.find(key);
    // The list is reversed, so its last index is that of the first bundle.
    while (target.found == kNone && list != candidates.end() && !list->second.empty()) {
        if (!matched_.contains(list->second.back()))
            match(target, list->second.back());
        list->second.pop_back();
    }
}

// Two bundles in a directory may stand for the same entry, so those that have their names already are matched first.
void BundleUpdate::matchByName()
{
    std::unordered_map<std::string, std::size_t> byPath;
    for (std::size_t index = 0; index < found_.size(); ++index)
        byPath.emplace(found_[index].path(), index);
    for (Target& target : targets_) {
        const auto same = byPath.find(target.directory + '/' + plainName(*target.planned));
        if (same == byPath.end() || matched_.contains(same->second))
            continue;
        const FoundBundle& bundle = found_[same->second];
        if (bundle.desktopId == target.planned->desktopId
            || (bundle.desktopId.empty() && bundle.entryPath == target.planned->entryPath))
            match(target, same->second);
    }
}

void BundleUpdate::matchWithinDirectories()
{
    Candidates byId;
    Candidates damagedByEntry;
    for (std::size_t index = found_.size(); index-- > 0;) {
        const FoundBundle& bundle = found_[index];
        if (bundle.desktopId.empty())
            damagedByEntry[key(bundle.directory, bundle.entryPath)].push_back(index);
        else
            byId[key(bundle.directory, bundle.desktopId)].push_back(index);
    }
    for (Target& target : targets_) {
        matchFirstFree(target, byId, key(target.directory, target.planned->desktopId));
        matchFirstFree(target, damagedByEntry, key(target.directory, target.planned->entryPath));
    }
}

void BundleUpdate::matchAcrossDirectories()
{
    Candidates byId;
    for (std::size_t index = found_.size(); index-- > 0;)
        byId[key(extensionOf(found_[index].kind), found_[index].desktopId)].push_back(index);
    for (Target& target : targets_)
        matchFirstFree(target, byId, key(extensionOf(target.planned->kind), target.planned->desktopId));
}

// A bundle that has the plain name keeps it when another one with the same title is added: a picked application must
// not turn into a different one.
int BundleUpdate::nameRank(const Target& target) const
{
    if (target.planned->isFirstOfItsName)
        return 0;
    const bool hasPlainName =
        target.found != kNone && found_[target.found].path() == target.directory + '/' + plainName(*target.planned);
    return hasPlainName ? 1 : 2;
}

void BundleUpdate::assignNames()
{
    std::vector<std::pair<int, Target>> ranked;
    ranked.reserve(targets_.size());
    for (Target& target : targets_)
        ranked.emplace_back(nameRank(target), std::move(target));
    std::stable_sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first < b.first : a.second.planned->desktopId < b.second.planned->desktopId;
    });
    BundleNames names([this](const std::string& path) { return taken_.insert(path).second; });
    targets_.clear();
    for (auto& [rank, target] : ranked) {
        target.name = names.nameIn(target.directory, target.planned->title, target.planned->desktopId,
                                   extensionOf(target.planned->kind));
        targets_.push_back(std::move(target));
    }
}

bool BundleUpdate::putAside(FoundBundle& bundle)
{
    if (bundle.name.starts_with(kUnfinishedPrefix))
        return true;
    std::string name;
    do {
        name = std::string(kUnfinishedPrefix) + std::to_string(nextAsideNumber_++);
    } while (access((bundle.directory + '/' + name).c_str(), F_OK) == 0);
    if (std::rename(bundle.path().c_str(), (bundle.directory + '/' + name).c_str()) != 0)
        return false;
    bundle.name = name;
    return true;
}

// A bundle is first renamed as a whole to a hidden name and then removed, so that no incomplete bundle is seen if the
// system refuses to remove a part.
void BundleUpdate::removeUnwanted()
{
    for (std::size_t index = 0; index < found_.size(); ++index) {
        if (matched_.contains(index))
            continue;
        if (putAside(found_[index]))
            takeApart(found_[index].path());
        else
            fail("couldn't remove", found_[index].path());
    }
}

// Two bundles may exchange their names, so each one that is in the way of another gets a hidden name first.
void BundleUpdate::moveOutOfTheWay()
{
    std::set<std::string> wanted;
    for (const Target& target : targets_)
        wanted.insert(target.path());
    for (const Target& target : targets_) {
        if (target.found == kNone)
            continue;
        FoundBundle& bundle = found_[target.found];
        if (bundle.path() != target.path() && wanted.contains(bundle.path()) && !putAside(bundle))
            fail("couldn't rename", bundle.path());
    }
}

void BundleUpdate::bring(const Target& target)
{
    const PlannedBundle& planned = *target.planned;
    if (target.found == kNone) {
        if (make(target))
            addInstalled(target, target.path());
        return;
    }
    const FoundBundle& bundle = found_[target.found];
    if (!rename(bundle, target)) {
        addInstalled(target, bundle.path());
        return;
    }
    if (bundle.entryPath != planned.entryPath)
        replaceLink(target);
    if (bundle.info != planned.info) {
        if (const Result<void> written = replaceRegenerableFile(infoPath(target.path()), planned.info); !written)
            outcome_.unwritten.push_back(written.error());
    }
    addInstalled(target, target.path());
}

bool BundleUpdate::rename(const FoundBundle& bundle, const Target& target)
{
    if (bundle.path() == target.path() || std::rename(bundle.path().c_str(), target.path().c_str()) == 0)
        return true;
    fail("couldn't rename", bundle.path());
    return false;
}

void BundleUpdate::replaceLink(const Target& target)
{
    const std::string link = entryLinkPath(target.path());
    const std::string unfinished = link + ".new";
    unlink(unfinished.c_str());
    if (symlink(target.planned->entryPath.c_str(), unfinished.c_str()) != 0
        || std::rename(unfinished.c_str(), link.c_str()) != 0) {
        fail("couldn't link", link);
    }
}

bool BundleUpdate::make(const Target& target)
{
    std::string unfinished = target.directory + '/' + std::string(kUnfinishedPrefix) + "XXXXXX";
    if (!mkdtemp(unfinished.data())) {
        fail("couldn't make", target.path());
        return false;
    }
    std::optional<Error> problem;
    if (mkdir((unfinished + "/Contents").c_str(), 0700) != 0)
        problem = Error::fromErrno(errno, "couldn't make", target.path() + "/Contents");
    else if (const Result<void> written = replaceRegenerableFile(infoPath(unfinished), target.planned->info); !written)
        problem = written.error();
    else if (symlink(target.planned->entryPath.c_str(), entryLinkPath(unfinished).c_str()) != 0
             || std::rename(unfinished.c_str(), target.path().c_str()) != 0)
        problem = Error::fromErrno(errno, "couldn't make", target.path());
    if (!problem)
        return true;
    outcome_.unwritten.push_back(std::move(*problem));
    takeApart(unfinished);
    return false;
}

void BundleUpdate::takeApart(const std::string& bundle)
{
    unlink((infoPath(bundle) + ".new").c_str());
    unlink(infoPath(bundle).c_str());
    unlink((entryLinkPath(bundle) + ".new").c_str());
    unlink(entryLinkPath(bundle).c_str());
    rmdir((bundle + "/Contents").c_str());
    if (rmdir(bundle.c_str()) != 0)
        outcome_.leftovers.push_back(Error::fromErrno(errno, "couldn't remove", bundle));
}

void BundleUpdate::addInstalled(const Target& target, const std::string& path)
{
    const PlannedBundle& planned = *target.planned;
    outcome_.bundles.push_back(
        { planned.kind, path, planned.desktopId, planned.entryPath, planned.program, planned.title });
}

void BundleUpdate::fail(const char* what, const std::string& path)
{
    outcome_.unwritten.push_back(Error::fromErrno(errno, what, path));
}

} // namespace quillbox
