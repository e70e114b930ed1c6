#pragma once

#include "InstalledBundles.h"
#include "Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// The parts of a bundle on disk. By them a bundle is also told from what others have put beside it.

std::string_view extensionOf(BundleKind kind);
// The paths of the bundle's Info.plist, and of its link to the desktop entry.
std::string infoPath(const std::string& bundle);
std::string entryLinkPath(const std::string& bundle);

// While a bundle is being made, moved or removed, its name begins like this, so that file managers and menus hide it.
inline constexpr std::string_view kUnfinishedPrefix = ".unfinished-";

// A bundle as it is on disk.
struct FoundBundle {
    BundleKind kind = BundleKind::application;
    std::string directory;
    std::string name;
    // Empty if the Info.plist is damaged.
    std::string desktopId;
    std::string entryPath;
    // The bytes of its Info.plist.
    std::string info;
    // The title and the program in the Info.plist.
    std::string title {};
    std::string program {};

    std::string path() const { return directory + '/' + name; }
};

// The contents of one of the keeper's directories.
struct FoundBundles {
    // In the order of their names.
    std::vector<FoundBundle> bundles;
    // Paths of what the keeper did not make.
    std::vector<std::string> others;
};

// Reads the directory, and removes what a process that was killed half-way has left in it. Fails if anything in it
// can't be read, so that nothing is taken for missing.
Result<FoundBundles> readBundles(const std::string& directory, BundleKind kind);

} // namespace quillbox
