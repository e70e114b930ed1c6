#pragma once

#include "URLResourceValues.h"

#include <optional>
#include <string>

namespace quillbox {

// How many elements of a chain of links and alias files are looked at, the first one included, before it is given up:
// it may lead in a circle.
inline constexpr int kMaximumLinkElements = 20;

// What a chain of symbolic links and alias files ends at.
struct LinkEnd {
    // The path as the chain led there. It may go through links to directories and have ".." in it, so it means what the
    // kernel makes of it and can't be tidied up as text: see canonicalPath().
    std::string path;
    // isDirectory, isPackage, isAliasFile and isSymbolicLink of what is there.
    URLResourceValues values;
};

// Follows the links and alias files that begin with the entry at `path`, one after another. An entry that is neither
// ends its chain at once. None where an element can't be looked at or read, or the chain has too many elements.
std::optional<LinkEnd> endOfLinks(const std::string& path);

} // namespace quillbox
