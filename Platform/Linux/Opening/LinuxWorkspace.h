#pragma once

#include "ApplicationLauncher.h"
#include "FileIcons.h"
#include "FileViewer.h"
#include "NSWorkspace.h"

#include <functional>
#include <string>
#include <unordered_map>

namespace quillbox {

class ApplicationBundles;

// Opens files and programs on a freedesktop desktop and finds their icons. The program installs it once; `bundles` must
// outlive it and the images that it returned. If something can't be opened, the user is told through `onFailure` and
// the program continues. Paths are passed on in their canonical form: other programs and GIO remove ".." from a path as
// text, which may give another file than the kernel's.
class LinuxWorkspace final : public NSWorkspace {
public:
    // `message` is a heading, `detail` says what went wrong.
    using FailureCallback = std::function<void(const std::string& message, const std::string& detail)>;

    LinuxWorkspace(ApplicationBundles& bundles, FailureCallback onFailure);

    using NSWorkspace::icon;
    NSImage icon(std::string_view forFile, EntryKind kind) override;
    std::optional<NSImage> systemImage(std::string_view name) override;

    // Opening a bundle of ours starts its desktop entry, and opening an AppDir its AppRun; another package is shown in
    // the file manager. A desktop entry or an AppRun that is not trusted (see mayBeStarted()) is opened like any other
    // file or directory.
    bool open(const URL& url) override;
    // `withBundleIdentifier` is the desktop id of an application that has a bundle, with or without the extension;
    // "com.apple.systempreferences" is the desktop's settings program.
    bool launchApplication(const std::string& withBundleIdentifier) override;

    // The identifier of an application is the path of its desktop entry.
    Result<std::vector<Application>> applications(const URL& toOpen) override;
    bool open(const URL& url, const Application& withApplication) override;
    // Asks the file manager over the bus. If there is none that shows files, or it does not answer, the directory is
    // opened; the user is told of a failure then.
    bool activateFileViewer(const URL& selecting) override;
    // Returns the desktop entry of a bundle of ours.
    std::string fileBehind(const std::string& path) override;

    // Called with each path after it was opened: the canonical path of a file or a bundle, or the path of the desktop
    // entry for an application that was launched by its id.
    std::function<void(const std::string& path)> onOpened;

    // See ApplicationLauncher.
    void setSearchPaths(LibrarySearchPaths* paths) { launcher_.setSearchPaths(paths); }
    // The display calls it before the action of a click runs, so that a program that the action starts may take the
    // focus.
    void setActivationToken(std::string token) { launcher_.setActivationToken(std::move(token)); }
    // Whether a program was started since setActivationToken() that will tell the desktop, by the token, when it is
    // ready.
    bool isActivationTokenTaken() const { return launcher_.isActivationTokenTaken(); }

private:
    Result<void> start(const std::string& path);
    Result<void> startAppDir(const std::string& path);
    std::optional<std::string> entryOfApplication(const std::string& identifier) const;
    bool tell(const std::string& what, const Result<void>& result) const;
    // Tells the user of a failure, as tell() does; after a success, tells `onOpened` that `path` was opened.
    bool finish(const std::string& what, const std::string& path, const Result<void>& result) const;

    ApplicationBundles& bundles_;
    FailureCallback onFailure_;
    ApplicationLauncher launcher_;
    FileIcons icons_;
    FileViewer fileViewer_;
    unsigned iconsGeneration_ = 0;
    std::unordered_map<std::string, NSImage> systemImages_;
};

} // namespace quillbox
