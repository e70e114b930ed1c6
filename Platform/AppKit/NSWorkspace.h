#pragma once

#include "DirectoryListing.h"
#include "NSImage.h"
#include "URL.h"

#include <optional>
#include <string>
#include <string_view>

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
    // Whether a directory is there whose name makes it a package.
    bool isFilePackage(const std::string& atPath);

    // Returns the workspace that is installed, otherwise one that has no icons and opens nothing.
    static NSWorkspace& sharedWorkspace();
};

} // namespace quillbox
