#pragma once

#include "Data.h"
#include "FileIdentity.h"
#include "Result.h"

#include <cstdint>
#include <string>

namespace quillbox {

// A picked file as saved settings remember it: where it was and what it was. URL makes and resolves them.
//
// The identity is the entry's own; a bookmark of a link means the link. A reader refuses bytes of a version it does not
// know: they are kept by whoever saved them and are not lost. Bookmark.cpp has the format.
//
// Resolving takes whatever is at the path first, because many editors save a file by putting a new one in
// its place; the bookmark is stale where that is another file. With nothing at the path, a reference that
// follows the file in this process tells where it is; then BookmarkSearch.h looks for its identity.
struct Bookmark {
    std::string path;
    bool isDirectory = false;
    bool hasDirectoryPath = false;
    std::string fileSystemUUID;
    FileIdentity identity;
    Data handle;

    // Whether both are, as far as can be told, the same file. Inodes are used again, within a tick of the
    // file system's clock even with the same birth time: whatever both know has to be the same. Devices
    // count only where the UUIDs and births are unknown.
    bool isSameFile(const Bookmark& other) const;

    // The entry at the path now; fails where it can't be looked at.
    static Result<Bookmark> ofPath(const std::string& path);

    Data encoded() const;
    static Result<Bookmark> decode(const Data& bytes);

    friend bool operator==(const Bookmark&, const Bookmark&) = default;
};

} // namespace quillbox
