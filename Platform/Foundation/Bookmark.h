#pragma once

#include "Data.h"
#include "FileIdentity.h"
#include "Result.h"

#include <cstdint>
#include <string>

namespace quillbox {

// A bookmark remembers a picked file in the saved settings: where it was and which file it was. URL makes and resolves
// bookmarks; Bookmark.cpp describes the stored format.
//
// The identity is the entry's own: a bookmark of a symbolic link means the link, not its target. decode() refuses bytes
// of a version that it does not know; whoever saved such bytes keeps them, so nothing is lost.
//
// Resolving first takes whatever is at the path, because many editors save a file by putting a new one in its place;
// the bookmark is stale if that is another file. If nothing is at the path, a reference that follows the file in this
// process may know where it is; otherwise it is searched for by its identity (BookmarkSearch.h).
struct Bookmark {
    std::string path;
    bool isDirectory = false;
    bool hasDirectoryPath = false;
    std::string fileSystemUUID;
    FileIdentity identity;
    Data handle;

    // Whether both bookmarks mean the same file, as far as can be told. File systems reuse inode numbers, sometimes
    // within one tick of their clock and so with the same birth time; therefore everything that both bookmarks know
    // must be equal. Device numbers count only where UUIDs and birth times are unknown.
    bool isSameFile(const Bookmark& other) const;

    // Describes the entry that is at the path now. Fails if the entry can't be looked at.
    static Result<Bookmark> ofPath(const std::string& path);

    Data encoded() const;
    static Result<Bookmark> decode(const Data& bytes);

    friend bool operator==(const Bookmark&, const Bookmark&) = default;
};

} // namespace quillbox
