#pragma once

#include "MountTable.h"

#include <optional>
#include <string>
#include <unordered_set>

namespace quillbox {

// Whether a link at the very end of a path is followed too.
enum class LastLink { notFollowed, followed };

// Finds the first mount that may hang (MountTable) which the kernel would come to on the way along a path, links and
// ".." included. It touches nothing on such a mount, not even its root: links are read one at a time, and only when
// everything before them is known to answer. A path is checked here before it is used, so that one which leads to such
// a mount is never used directly.
//
// Directories on the way are remembered until forget() is called. The entries of one directory then cost one table
// look-up each, and one system call more if a link at the end counts.
class PathRouter {
public:
    // Returns nothing if the way comes to no such mount. `path` is absolute.
    std::optional<MountTable::Mount> mountThatMayHangOn(const std::string& path, LastLink lastLink);

    // Called when directories may have become links, and mounts may have come or gone.
    void forget();

private:
    // Directories whose paths have no links in them and that are not on such a mount.
    std::unordered_set<std::string> freeDirectories_;
};

// Does the same with nothing remembered.
std::optional<MountTable::Mount> mountThatMayHangOn(const std::string& path, LastLink lastLink);

} // namespace quillbox
