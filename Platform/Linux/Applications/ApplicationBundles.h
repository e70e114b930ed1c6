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

// Keeps, for each domain, a directory of bundles made from desktop entries: an application is `<localized name>.app`, a
// settings panel of the running desktop `<desktop id>.prefPane`, and the desktop's settings program is also `System
// Settings.app` in the system domain. A bundle has an Info.plist (CFBundleName is the localized name,
// CFBundleIdentifier the desktop id with its extension, CFBundleExecutable the first word of Exec) and a link to its
// entry. The standard directories ask for an update before they name the directories; if nothing has changed, that is
// one stat call for each entry and directory, and no bundle is touched. Desktop entries are only read. A damaged entry
// makes no bundle; one that can't be read at the moment leaves its bundle as it is.
//
// The bundles lie in the data directory. While nothing can be written there, other bundles in $XDG_RUNTIME_DIR are
// used.
class ApplicationBundles {
public:
    // `onError` is told once when something can't be read or bundles can't be written, and again only after that
    // worked.
    ApplicationBundles(XdgEnvironment environment, std::function<void(const Error&)> onError);

    // These are called by the standard directories.
    void bringUpToDate();
    std::string directory(BundleDomain domain, BundleKind kind) const { return serving_->directory(domain, kind); }

    // These are for whoever opens things and records their use; they describe the bundles as of the last update.
    // bundleAt() returns the bundle of ours to which `path` leads, or null if it leads to none. It is valid until the
    // next update.
    const InstalledBundle* bundleAt(const std::string& path) const;
    const std::vector<InstalledBundle>& bundles() const { return installed_.all(); }
    // The desktop entry of the running desktop's settings program; nothing if there is none.
    std::optional<std::string> settingsProgramEntry() const;
    // Changes whenever the entries have been read again. Whoever keeps something taken from them can tell by it when to
    // ask again.
    unsigned generation() const { return generation_; }
    const XdgEnvironment& environment() const { return environment_; }

    // The name of the settings program's bundle, without its extension.
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
    // Empty if the session has no runtime directory.
    std::optional<BundleStore> reserve_;
    // The store whose bundles are in use.
    const BundleStore* serving_ = &usual_;
    std::optional<BundleState> state_;
    bool isStateLoaded_ = false;
    InstalledBundles installed_;
    // Bundles in the usual place while the reserve is in use. Those that the user picked can still be opened.
    InstalledBundles leftBehind_;
    unsigned generation_ = 0;
    std::vector<Error> reported_;
};

} // namespace quillbox
