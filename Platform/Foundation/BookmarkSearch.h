#pragma once

#include <optional>
#include <string>

namespace quillbox {

struct Bookmark;

// Where the file of a bookmark is now that nothing is at its path. Asked for by resolving, and so at every
// opening of the menu while a picked file is missing: what it does is bounded and writes nothing. In order:
//
// 1. a reference that follows the file in this process;
// 2. mounts of its file system at other places: the file itself at the same place in the volume; where the
//    UUID says that it is the same volume, whatever is there;
// 3. the file itself in its directory, in the one above, and in that one's direct sub-directories;
// 4. the same around its place on the other mounts of 2, where the UUID is known.
//
// It never enters another file system, a link or a remote mount. Steps 2 to 4 together look at no more
// than kMaximumSearchedEntries entries in kMaximumSearchedDirectories directories; a file beyond that stays missing.
std::optional<std::string> findMovedFile(const Bookmark&);

constexpr int kMaximumSearchedEntries = 20000;
constexpr int kMaximumSearchedDirectories = 200;

} // namespace quillbox
