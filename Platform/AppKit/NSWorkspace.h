#pragma once

#include "DirectoryListing.h"
#include "NSImage.h"
#include "URL.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillbox {

// Opens files and applications and names their icons, as the running desktop would. Implemented by the
// desktop's side; tests implement one that records. Opening that fails is told to the person by the
// workspace itself.
class NSWorkspace {
public:
    using EntryKind = DirectoryListing::EntryKind;

    virtual ~NSWorkspace() = default;

    // The icon of what is at `path`, without reading its contents; the lookup itself waits until the icon
    // is painted. `kind` is what the caller knows of the entry; unknown makes the workspace look when it
    // has to.
    virtual NSImage icon(std::string_view forFile, EntryKind kind) = 0;
    NSImage icon(std::string_view forFile) { return icon(forFile, EntryKind::unknown); }

    // A picture of the system by its name; none where the system has no such picture.
    virtual std::optional<NSImage> systemImage(std::string_view name) = 0;

    // Opens a document in its default application, starts an application's package, shows a directory in
    // the file manager. Whether the request could be handed over.
    virtual bool open(const URL& url) = 0;
    virtual bool launchApplication(const std::string& withBundleIdentifier) = 0;
    // A directory whose name makes it a package.
    bool isFilePackage(const std::string& atPath);

    // The workspace that is Installed; where none is, one that has no icons and opens nothing.
    static NSWorkspace& sharedWorkspace();
};

} // namespace quillbox
