#pragma once

#include "InstalledBundles.h"
#include "Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// Bundles on disk: their parts, and how they are told from what others have put beside them.

std::string_view extensionOf(BundleKind kind);
// Of the bundle's Info.plist, and of its link to the desktop entry.
std::string infoPath(const std::string& bundle);
std::string entryLinkPath(const std::string& bundle);

// Bundles that are being made, moved or removed have names that begin so: file managers and menus hide them.
inline constexpr std::string_view kUnfinishedPrefix = ".unfinished-";

// A bundle as it is on disk.
struct FoundBundle {
    BundleKind kind = BundleKind::application;
    std::string directory;
    std::string name;
    // Empty where its information is damaged.
    std::string desktopId;
    std::string entryPath;
    // The bytes of its Info.plist.
    std::string info;
    // What that says.
    std::string title {};
    std::string program {};

    std::string path() const { return directory + '/' + name; }
};

// What one of the keeper's directories holds.
struct FoundBundles {
    // In the order of their names.
    std::vector<FoundBundle> bundles;
    // Paths of what the keeper did not make.
    std::vector<std::string> others;
};

// Reads the directory and clears up what a process that was ended half-way through has left in it. Fails where
// anything in it can't be read, so that nobody takes it for missing.
Result<FoundBundles> readBundles(const std::string& directory, BundleKind kind);

} // namespace quillbox
