#pragma once

#include "DirectoryListing.h"
#include "NSImage.h"
#include "Result.h"
#include "URL.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// Opens files and applications and finds their icons, as the running desktop would. The desktop's side implements it;
// tests implement one that records. The workspace itself tells the user if opening fails.
class NSWorkspace {
public:
    using EntryKind = DirectoryListing::EntryKind;

    virtual ~NSWorkspace() = default;

    // Returns the icon of what is at `path`, without reading its contents; the icon is looked up only when it is
    // painted. `kind` is what the caller knows of the entry. If it is unknown, the workspace looks at the entry when it
    // has to.
    virtual NSImage icon(std::string_view forFile, EntryKind kind) = 0;
    NSImage icon(std::string_view forFile) { return icon(forFile, EntryKind::unknown); }

    // Returns a picture of the system by its name, or nothing if the system has no such picture.
    virtual std::optional<NSImage> systemImage(std::string_view name) = 0;

    // Opens a document in its default application, starts an application's package, or shows a directory in the file
    // manager. Returns whether the request could be handed over.
    virtual bool open(const URL& url) = 0;
    virtual bool launchApplication(const std::string& withBundleIdentifier) = 0;

    // An application that can open a file. The identifier has a meaning for the workspace only.
    struct Application {
        std::string identifier;
        std::string name;
        NSImage icon;
    };
    // Returns the applications that can open what is at the URL, the user's usual one first. Nothing is told to the
    // user if they can't be found out.
    virtual Result<std::vector<Application>> applications(const URL& toOpen) = 0;
    // Opens a document with one of these applications.
    virtual bool open(const URL& url, const Application& withApplication) = 0;
    // Shows the directory that contains the file in the file manager, with the file selected.
    virtual bool activateFileViewer(const URL& selecting) = 0;
    // Returns the file that the user knows, if the package at that path was made by the workspace to stand for it;
    // otherwise the path itself.
    virtual std::string fileBehind(const std::string& path) = 0;

    // Whether a directory is there whose name makes it a package.
    bool isFilePackage(const std::string& atPath);

    // Returns the workspace that is installed, otherwise one that has no icons and opens nothing.
    static NSWorkspace& sharedWorkspace();
};

} // namespace quillbox
