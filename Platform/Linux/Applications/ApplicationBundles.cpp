#include "ApplicationBundles.h"

#include "DesktopEntry.h"
#include "DesktopEntryScan.h"
#include "PropertyList.h"
#include "SettingsPanels.h"

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
        // All its texts are valid UTF-8, which is what it could fail for.
        const Result<Data> bytes = PropertyList(std::move(info)).binaryData();
        return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
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
      store_(environment_.bundlesDirectory())
{
}

void ApplicationBundles::bringUpToDate()
{
    if (!isStateLoaded_) {
        state_ = BundleState::load(stateFile(), environment_);
        isStateLoaded_ = true;
        if (state_)
            applications_ = state_->applications;
    }
    if (!state_ || !state_->isCurrent())
        update();
}

void ApplicationBundles::update()
{
    ++generation_;
    BundleState state(environment_);
    std::vector<PlannedBundle> bundles = plan(state);
    std::vector<Error> errors = store_.bringTo(bundles);
    for (PlannedBundle& bundle : bundles) {
        if (bundle.kind == BundleKind::application) {
            state.applications.push_back({ std::move(bundle.path), std::move(bundle.desktopId),
                                           std::move(bundle.entryPath), std::move(bundle.program),
                                           std::move(bundle.title) });
        }
    }
    applications_ = state.applications;
    for (const std::string& directory : store_.directories())
        state.watchOwn(directory);
    if (errors.empty()) {
        if (const Result<void> saved = state.save(stateFile()); !saved)
            errors.push_back(saved.error());
    }
    // What could not be written is tried again the next time.
    state_.reset();
    if (errors.empty())
        state_ = std::move(state);
    report(errors);
}

void ApplicationBundles::report(const std::vector<Error>& errors)
{
    for (const Error& error : errors) {
        if (onError_ && std::find(reported_.begin(), reported_.end(), error) == reported_.end())
            onError_(error);
    }
    reported_ = errors;
}

std::vector<PlannedBundle> ApplicationBundles::plan(BundleState& state) const
{
    const SettingsPanels* settings = SettingsPanels::forDesktops(environment_.desktops);
    std::vector<PlannedBundle> bundles;
    std::optional<PlannedBundle> settingsProgram;
    std::size_t settingsRank = 0;
    for (const DesktopEntryFile& file : scanDesktopEntries(environment_, state)) {
        const auto entry = DesktopEntry::read(file.path, environment_.languages);
        if (!entry || entry->isHidden)
            continue;
        if (!entry->tryExec.empty()) {
            state.watchProgram(entry->tryExec);
            if (environment_.findProgram(entry->tryExec).empty())
                continue;
        }
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

std::optional<std::string> ApplicationBundles::entryFile(const std::string& desktopId) const
{
    const std::string id = desktopId.ends_with(".desktop") ? desktopId : desktopId + ".desktop";
    BundleState unused(environment_);
    for (const DesktopEntryFile& file : scanDesktopEntries(environment_, unused)) {
        if (file.desktopId == id)
            return file.path;
    }
    return std::nullopt;
}

std::optional<std::string> ApplicationBundles::settingsProgramEntry() const
{
    const SettingsPanels* settings = SettingsPanels::forDesktops(environment_.desktops);
    if (!settings)
        return std::nullopt;
    for (const char* id : settings->programs) {
        if (auto file = entryFile(id))
            return file;
    }
    return std::nullopt;
}

} // namespace quillbox
