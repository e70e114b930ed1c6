#pragma once

#include "MountTable.h"

#include <optional>
#include <string>
#include <unordered_set>

namespace quillbox {

// Whether a link at the very end of a path is gone through too.
enum class LastLink { notFollowed, followed };

// Finds the first mount that may hang (MountTable) which the kernel would come to on the way along a path, links and
// ".." included. Nothing of such a mount is touched, not even its root: links are read one at a time, and only where
// all before them is known to answer. Asked before a path is used, so that one which leads there is never used
// directly.
//
// Directories on the way are remembered until forget(), so that the entries of one cost a look into a table each, and a
// system call more only where a link at the end counts.
class PathRouter {
public:
    // None where the way comes to no such mount. `path` is absolute.
    std::optional<MountTable::Mount> mountThatMayHangOn(const std::string& path, LastLink lastLink);

    // Directories may have become links, and mounts may have come and gone.
    void forget();

private:
    // Without links in them, and not on such a mount.
    std::unordered_set<std::string> freeDirectories_;
};

// The same, with nothing remembered.
std::optional<MountTable::Mount> mountThatMayHangOn(const std::string& path, LastLink lastLink);

} // namespace quillbox
