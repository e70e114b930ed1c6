#pragma once

#include "URLResourceValues.h"

#include <optional>
#include <string>

namespace quillbox {

// The most elements of a chain of links and alias files that are looked at, the first one included. A longer chain is
// given up, because it may lead in a circle.
inline constexpr int kMaximumLinkElements = 20;

// The end of a chain of symbolic links and alias files.
struct LinkEnd {
    // The path to which the chain led. It may go through links to directories and have ".." in it, so only the kernel
    // can tell what it means, and it can't be shortened as text: see canonicalPath().
    std::string path;
    // The values isDirectory, isPackage, isAliasFile and isSymbolicLink of the entry at that path.
    URLResourceValues values;
};

// Follows the links and alias files that begin with the entry at `path`, one after another. An entry that is neither is
// the end. Returns nothing if an element can't be looked at or read, or the chain has too many elements.
std::optional<LinkEnd> endOfLinks(const std::string& path);

} // namespace quillbox
