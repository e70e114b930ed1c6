#pragma once

#include "ApplicationLauncher.h"
#include "FileIcons.h"
#include "NSWorkspace.h"

#include <functional>
#include <string>
#include <unordered_map>

namespace quillbox {

class ApplicationBundles;

// Opens files and programs on a freedesktop desktop and names their icons. Installed once by the program; `bundles`
// must outlive it and the images it gave. What can't be opened is told to the person through `onFailure` and never
// stops the program. Paths are handed on in their canonical form: other programs and GIO take ".." out of a path by its
// text, which may name another file than the kernel means.
class LinuxWorkspace final : public NSWorkspace {
public:
    // `message` is a heading, `detail` says what went wrong.
    using FailureCallback = std::function<void(const std::string& message, const std::string& detail)>;

    LinuxWorkspace(ApplicationBundles& bundles, FailureCallback onFailure);

    using NSWorkspace::icon;
    NSImage icon(std::string_view forFile, EntryKind kind) override;
    std::optional<NSImage> systemImage(std::string_view name) override;

    // A bundle of ours starts its entry, an AppDir its AppRun; another package shows in the file manager. A desktop
    // entry or an AppRun that is not to be trusted (see mayBeStarted()) is opened like any other file or directory.
    bool open(const URL& url) override;
    // By the desktop id of an application that has a bundle, with or without its extension;
    // "com.apple.systempreferences" is the desktop's settings program.
    bool launchApplication(const std::string& withBundleIdentifier) override;

    // Is told each path that was opened, once it was: the canonical one of a file or a bundle, or for an application
    // that was launched by its id its entry's.
    std::function<void(const std::string& path)> onOpened;

    // See ApplicationLauncher.
    void setSearchPaths(LibrarySearchPaths* paths) { launcher_.setSearchPaths(paths); }
    // The display calls it before the action of a click runs, so that what the action starts may take the focus.
    void setActivationToken(std::string token) { launcher_.setActivationToken(std::move(token)); }
    // Whether what was started since then tells the desktop, by the token, when it has started.
    bool isActivationTokenTaken() const { return launcher_.isActivationTokenTaken(); }

private:
    Result<void> start(const std::string& path);
    Result<void> startAppDir(const std::string& path);
    std::optional<std::string> entryOfApplication(const std::string& identifier) const;
    bool tell(const std::string& what, const Result<void>& result) const;
    // Tells the person of a failure, as tell() does, and `onOpened` that `path` was opened.
    bool finish(const std::string& what, const std::string& path, const Result<void>& result) const;

    ApplicationBundles& bundles_;
    FailureCallback onFailure_;
    ApplicationLauncher launcher_;
    FileIcons icons_;
    unsigned iconsGeneration_ = 0;
    std::unordered_map<std::string, NSImage> systemImages_;
};

} // namespace quillbox
