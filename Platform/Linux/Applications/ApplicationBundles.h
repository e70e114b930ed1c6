#pragma once

#include "BundleState.h"
#include "BundleStore.h"
#include "Result.h"
#include "XdgEnvironment.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillbox {

struct DesktopEntry;

// Keeps, for each domain, a directory of bundles made from desktop entries: an application is `<localized name>.app`,
// a settings panel of the running desktop `<desktop id>.prefPane`, and the desktop's settings program is also
// `System Settings.app` in the system domain. A bundle has an Info.plist (CFBundleName the localized name,
// CFBundleIdentifier the desktop id with its extension, CFBundleExecutable the first word of Exec) and a link to its
// entry. The standard directories ask it to bring them up to date; with nothing changed that is a stat call for each
// entry and directory, and no bundle is touched. Entries are only read here; a damaged one makes no bundle.
class ApplicationBundles {
public:
    // `onError` is told once of each thing that can't be written, and again only after it could.
    ApplicationBundles(XdgEnvironment environment, std::function<void(const Error&)> onError);

    void bringUpToDate();
    std::string directory(BundleDomain domain, BundleKind kind) const { return store_.directory(domain, kind); }
    // The desktop entry that a bundle of ours stands for, as a path; none for any other path.
    std::optional<std::string> entryOfBundle(const std::string& path) const { return store_.entryOfBundle(path); }
    // The entry file of that desktop id (with or without its extension) that counts.
    std::optional<std::string> entryFile(const std::string& desktopId) const;
    // That of the running desktop's settings program.
    std::optional<std::string> settingsProgramEntry() const;
    // Those that have a bundle, as they were when last brought up to date.
    const std::vector<InstalledApplication>& applications() const { return applications_; }
    // How often the entries have been read: who keeps what they say can tell by it when to ask again.
    unsigned generation() const { return generation_; }
    const XdgEnvironment& environment() const { return environment_; }

    // The name of the settings program's bundle, without extension.
    static constexpr const char* kSettingsTitle = "System Settings";

private:
    void update();
    std::vector<PlannedBundle> plan(BundleState& state) const;
    void report(const std::vector<Error>& errors);
    std::string stateFile() const { return environment_.bundlesDirectory() + "/state"; }

    XdgEnvironment environment_;
    std::function<void(const Error&)> onError_;
    BundleStore store_;
    std::optional<BundleState> state_;
    bool isStateLoaded_ = false;
    std::vector<InstalledApplication> applications_;
    unsigned generation_ = 0;
    std::vector<Error> reported_;
};

} // namespace quillbox
