#include "ApplicationBundles.h"

#include "DesktopEntry.h"
#include "DesktopEntryScan.h"
#include "PropertyList.h"
#include "SettingsPanels.h"

#include <unistd.h>

#include <algorithm>

namespace quillbox {

namespace {

    std::string infoFor(const DesktopEntry& entry, const std::string& desktopId)
    {
        PropertyList::Dictionary info;
        info["CFBundleName"] = entry.name;
        info["CFBundleIdentifier"] = desktopId;
        if (!entry.program.empty())
            info["CFBundleExecutable"] = entry.program;
        // It could fail only for texts that are not valid UTF-8, and all of these are.
        const Result<Data> bytes = PropertyList(std::move(info)).binaryData();
        return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
    }

    // Returns the entry if it may be shown and started.
    std::optional<DesktopEntry> usableEntry(const DesktopEntryFile& file, const XdgEnvironment& environment,
                                            BundleState& state, UnreadSources& unread)
    {
        Result<std::optional<DesktopEntry>> read = DesktopEntry::read(file.path, environment.languages);
        if (!read) {
            unread.add(read.error());
            state.watchUnread(file.path);
            return std::nullopt;
        }
        std::optional<DesktopEntry> entry = std::move(*read);
        if (!entry || entry->isHidden)
            return std::nullopt;
        if (entry->tryExec.empty())
            return entry;
        state.watchProgram(entry->tryExec);
        const Result<std::string> program = environment.lookForProgram(entry->tryExec);
        // It is not known whether the program is installed, and so not whether the entry is to be shown.
        if (!program)
            unread.add({ program.error().code, program.error().what, file.path });
        return program && !program->empty() ? std::move(entry) : std::nullopt;
    }

    PlannedBundle bundleFor(const DesktopEntryFile& file, const DesktopEntry& entry, BundleKind kind)
    {
        PlannedBundle bundle;
        bundle.domain = file.domain;
        bundle.kind = kind;
        bundle.title = kind == BundleKind::application ? entry.name : file.desktopId;
        bundle.desktopId = file.desktopId;
        bundle.entryPath = file.path;
        bundle.program = entry.program;
        bundle.info = infoFor(entry, file.desktopId);
        return bundle;
    }

} // namespace

ApplicationBundles::ApplicationBundles(XdgEnvironment environment, std::function<void(const Error&)> onError)
    : environment_(std::move(environment)),
      onError_(std::move(onError)),
      usual_(environment_.bundlesDirectory())
{
    if (!environment_.runtimeDirectory.empty())
        reserve_.emplace(environment_.runtimeDirectory + "/quillbox/bundles");
}

void ApplicationBundles::bringUpToDate()
{
    if (!isStateLoaded_) {
        state_ = BundleState::load(stateFile(usual_), environment_);
        isStateLoaded_ = true;
        if (state_)
            installed_ = InstalledBundles(state_->bundles);
    }
    if (!isUpToDate())
        update();
}

bool ApplicationBundles::isUpToDate() const
{
    return state_ && state_->isCurrent() && (serving_ == &usual_ || !usual_.canBeWritten());
}

void ApplicationBundles::update()
{
    ++generation_;
    BundleState state(environment_);
    UnreadSources unread;
    const std::vector<PlannedBundle> planned = plan(state, unread);
    BundleStore::Outcome outcome = usual_.bringTo(planned, unread);
    std::vector<Error> errors = unread.errors();
    serving_ = &usual_;
    leftBehind_ = {};
    bool isWritten = outcome.unwritten.empty();
    if (!isWritten) {
        // One error is enough: the others have the same reason, and names that are new each time.
        errors.push_back(Error::fromErrno(outcome.unwritten.front().code,
                                          "couldn't keep the applications' bundles up to date in", usual_.root()));
        BundleStore::Outcome reserve = reserve_ ? reserve_->bringTo(planned, unread) : BundleStore::Outcome();
        isWritten = reserve_ && reserve.unwritten.empty() && !reserve.unread;
        if (isWritten) {
            serving_ = &*reserve_;
            leftBehind_ = InstalledBundles(std::move(outcome.bundles));
            outcome = std::move(reserve);
        }
    } else if (reserve_ && access(reserve_->root().c_str(), F_OK) == 0) {
        reserve_->bringTo({}, {});
    }
    errors.insert(errors.end(), outcome.leftovers.begin(), outcome.leftovers.end());
    // What could not be written is tried again the next time, and what is not known now is looked at again.
    state_.reset();
    if (outcome.unread) {
        errors.push_back(*outcome.unread);
    } else {
        installed_ = InstalledBundles(outcome.bundles);
        if (isWritten)
            state_ = std::move(state);
    }
    if (state_) {
        state_->bundles = std::move(outcome.bundles);
        for (const std::string& directory : serving_->directories())
            state_->watchOwn(directory);
    }
    // The state is kept for the next start of the program only if everything could be read and removed.
    if (state_ && unread.errors().empty() && outcome.leftovers.empty()) {
        if (const Result<void> saved = state_->save(stateFile(*serving_)); !saved)
            errors.push_back(saved.error());
    }
    report(std::move(errors));
}

void ApplicationBundles::report(std::vector<Error> errors)
{
    for (const Error& error : errors) {
        if (onError_ && std::find(reported_.begin(), reported_.end(), error) == reported_.end())
            onError_(error);
    }
    reported_ = std::move(errors);
}

std::vector<PlannedBundle> ApplicationBundles::plan(BundleState& state, UnreadSources& unread) const
{
    const SettingsPanels* settings = SettingsPanels::forDesktops(environment_.desktops);
    std::vector<PlannedBundle> bundles;
    std::optional<PlannedBundle> settingsProgram;
    std::size_t settingsRank = 0;
    for (const DesktopEntryFile& file : scanDesktopEntries(environment_, state, unread)) {
        const std::optional<DesktopEntry> entry = usableEntry(file, environment_, state, unread);
        if (!entry)
            continue;
        if (settings && settings->isPanel(file.desktopId, *entry)) {
            bundles.push_back(bundleFor(file, *entry, BundleKind::preferencePane));
            continue;
        }
        if (!entry->isNoDisplay && entry->isShownOn(environment_.desktops))
            bundles.push_back(bundleFor(file, *entry, BundleKind::application));
        if (!settings)
            continue;
        const auto rank = settings->programRank(file.desktopId);
        if (rank && (!settingsProgram || *rank < settingsRank)) {
            settingsProgram = bundleFor(file, *entry, BundleKind::application);
            settingsRank = *rank;
        }
    }
    if (!settingsProgram)
        return bundles;

    settingsProgram->domain = BundleDomain::system;
    settingsProgram->title = kSettingsTitle;
    settingsProgram->isFirstOfItsName = true;
    std::erase_if(bundles, [&](const PlannedBundle& bundle) {
        return bundle.desktopId == settingsProgram->desktopId && bundle.domain == BundleDomain::system
            && bundle.kind == BundleKind::application && bundle.title == kSettingsTitle;
    });
    bundles.push_back(std::move(*settingsProgram));
    return bundles;
}

const InstalledBundle* ApplicationBundles::bundleAt(const std::string& path) const
{
    const InstalledBundle* bundle = installed_.at(path);
    return bundle ? bundle : leftBehind_.at(path);
}

std::optional<std::string> ApplicationBundles::settingsProgramEntry() const
{
    const SettingsPanels* settings = SettingsPanels::forDesktops(environment_.desktops);
    std::optional<std::string> entry;
    std::size_t bestRank = 0;
    for (const InstalledBundle& bundle : bundles()) {
        const auto rank = settings ? settings->programRank(bundle.desktopId) : std::nullopt;
        if (rank && (!entry || *rank < bestRank)) {
            entry = bundle.entryPath;
            bestRank = *rank;
        }
    }
    return entry;
}

} // namespace quillbox
