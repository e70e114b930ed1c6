#pragma once

#include "PropertyList.h"

#include <optional>
#include <string>

namespace quillbox {

// Names the directory of the application's Info.plist and resources. Tests install one (Installed.h) to use another
// directory than the application's own.
struct ApplicationResources {
    std::string directory;
};

// A directory with an Info.plist: the running application's, or a package on disk.
class Bundle {
public:
    // Returns the package at `path`, whose Info.plist lies in Contents/, or nothing if `path` is no directory.
    static std::optional<Bundle> atPath(const std::string& path);

    // Returns the text under `key` of the Info.plist, or nothing if it is absent or of another type, or if the file
    // can't be read.
    std::optional<std::string> infoString(const std::string& key) const;
    std::optional<std::string> bundleIdentifier() const { return infoString("CFBundleIdentifier"); }
    // Returns the path of the resource with this file name ("Quillbox Icon.svg"), or nothing if there is no such file.
    std::optional<std::string> pathForResource(const std::string& name) const;

    // Returns the path of a program that is delivered with the running one. It lies beside the executable in a build
    // tree, otherwise where it was installed to. Nothing if there is no such file.
    static std::optional<std::string> pathForAuxiliaryExecutable(const std::string& name);

    // Returns the bundle of the running application. Its resources lie in the ApplicationResources that are installed,
    // otherwise in Resources/ of the source or build tree beside the executable, or in ../share/quillbox once
    // installed.
    static const Bundle& main();

private:
    std::string resourceDirectory_;
    PropertyList::Dictionary info_;
};

} // namespace quillbox
