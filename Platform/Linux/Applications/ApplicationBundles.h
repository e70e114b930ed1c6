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

// Keeps, for each domain, a directory of bundles made from desktop entries: an application is `<localized name>.app`,
// a settings panel of the running desktop `<desktop id>.prefPane`, and the desktop's settings program is also
// `System Settings.app` in the system domain. A bundle has an Info.plist (CFBundleName the localized name,
// CFBundleIdentifier the desktop id with its extension, CFBundleExecutable the first word of Exec) and a link to its
// entry. The standard directories ask it to bring them up to date; with nothing changed that is a stat call for each
// entry and directory, and no bundle is touched. Entries are only read here; a damaged one makes no bundle, and one
// that can't be read at the moment leaves its bundle as it is.
//
// The bundles lie in the data directory. While nothing can be written there, others in $XDG_RUNTIME_DIR serve.
class ApplicationBundles {
public:
    // `onError` is told once of what can't be read and that bundles can't be written, and again only after they could.
    ApplicationBundles(XdgEnvironment environment, std::function<void(const Error&)> onError);

    // For the standard directories:
    void bringUpToDate();
    std::string directory(BundleDomain domain, BundleKind kind) const { return serving_->directory(domain, kind); }

    // For who opens things and notes their use, as of when the bundles were last brought up to date:
    // The bundle of ours that `path` leads to; null where that is anything else. Good until the next update.
    const InstalledBundle* bundleAt(const std::string& path) const;
    const std::vector<InstalledBundle>& bundles() const { return installed_.all(); }
    // The desktop entry of the running desktop's settings program.
    std::optional<std::string> settingsProgramEntry() const;
    // How often the entries have been read: who keeps what they say can tell by it when to ask again.
    unsigned generation() const { return generation_; }
    const XdgEnvironment& environment() const { return environment_; }

    // The name of the settings program's bundle, without extension.
    static constexpr const char* kSettingsTitle = "System Settings";

private:
    bool isUpToDate() const;
    void update();
    std::vector<PlannedBundle> plan(BundleState& state, UnreadSources& unread) const;
    void report(std::vector<Error> errors);
    static std::string stateFile(const BundleStore& store) { return store.root() + "/state"; }

    XdgEnvironment environment_;
    std::function<void(const Error&)> onError_;
    BundleStore usual_;
    // None without a directory for the time of the session.
    std::optional<BundleStore> reserve_;
    // The one whose bundles are shown.
    const BundleStore* serving_ = &usual_;
    std::optional<BundleState> state_;
    bool isStateLoaded_ = false;
    InstalledBundles installed_;
    // Bundles in the usual place while the reserve serves: picked ones are still opened.
    InstalledBundles leftBehind_;
    unsigned generation_ = 0;
    std::vector<Error> reported_;
};

} // namespace quillbox
