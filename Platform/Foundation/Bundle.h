#pragma once

#include "PropertyList.h"

#include <optional>
#include <string>

namespace quillbox {

// The directory of the application's Info.plist and resources, where another one than its own is Installed.
struct ApplicationResources {
    std::string directory;
};

// A directory with an Info.plist: the running application's, or a package on disk.
class Bundle {
public:
    // The package at `path` (its Info.plist lies in Contents/). None where that is no directory.
    static std::optional<Bundle> atPath(const std::string& path);

    // The text under `key` of the Info.plist; none where it is absent or of another type, or the file can't be read.
    std::optional<std::string> infoString(const std::string& key) const;
    // "CFBundleIdentifier", or none.
    std::optional<std::string> bundleIdentifier() const { return infoString("CFBundleIdentifier"); }
    // The path of a resource by its file name ("Quillbox Icon.svg"); none where there is no such file.
    std::optional<std::string> pathForResource(const std::string& name) const;

    // The path of a program that comes with the running one: beside it in a build tree, else where it was installed
    // to. None where there is no such file.
    static std::optional<std::string> pathForAuxiliaryExecutable(const std::string& name);

    // The running application. Its resources lie in the ApplicationResources that are Installed, else in Resources/
    // of the source or build tree beside the executable, or in ../share/quillbox once installed.
    static const Bundle& main();

private:
    std::string resourceDirectory_;
    PropertyList::Dictionary info_;
};

} // namespace quillbox
