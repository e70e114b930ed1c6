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
// must outlive it and the images it gave. What can't be opened is told to the person through the message handler and
// never stops the program.
class LinuxWorkspace final : public NSWorkspace {
public:
    // A heading and what went wrong.
    using MessageHandler = std::function<void(const std::string& message, const std::string& detail)>;

    LinuxWorkspace(ApplicationBundles& bundles, MessageHandler showMessage);

    using NSWorkspace::icon;
    NSImage icon(std::string_view forFile, EntryKind kind) override;
    std::optional<NSImage> systemImage(std::string_view name) override;

    // A bundle of ours starts its entry, an AppDir its AppRun; another package shows in the file manager. A desktop
    // entry that its owner has made executable is started, any other file opened.
    bool open(const URL& url) override;
    // By desktop id, with or without its extension; "com.apple.systempreferences" is the desktop's settings program.
    bool launchApplication(const std::string& withBundleIdentifier) override;

    // Is told each path that was opened, once it was: a file's, a bundle's, or for an application that was launched by
    // its id its entry's.
    void setOpenedHandler(std::function<void(const std::string& path)> handler) { openedHandler_ = std::move(handler); }

    // From the display, before the action of a click runs: lets what that action starts take the focus.
    void setActivationToken(std::string token) { launcher_.setActivationToken(std::move(token)); }

private:
    Result<void> start(const std::string& path);
    bool tell(const std::string& what, const Result<void>& result) const;
    // The same, and where `path` was opened, tells the handler.
    bool finish(const std::string& what, const std::string& path, const Result<void>& result) const;

    ApplicationBundles& bundles_;
    MessageHandler showMessage_;
    std::function<void(const std::string& path)> openedHandler_;
    ApplicationLauncher launcher_;
    FileIcons icons_;
    unsigned iconsGeneration_ = 0;
    std::unordered_map<std::string, NSImage> systemImages_;
};

} // namespace quillbox
