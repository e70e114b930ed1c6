#pragma once

#include "Data.h"
#include "FileIdentity.h"
#include "Result.h"

#include <cstdint>
#include <string>

namespace quillbox {

// A picked file as saved settings remember it: where it was and what it was. URL makes and resolves them.
//
// The bytes, version 1, all numbers big-endian:
//
//     4        the letters "QBbk"
//     1        the version, 1
//     1        bits: 1 the entry is a directory, 2 the URL was made with a trailing slash, 4 a birth time
//              is known; the others are 0
//     4 + n    length and bytes of the absolute path, as the file system has them
//     4 + n    length and text of the file system's UUID; empty where it is not known
//     4, 4     major and minor number of the device: a hint, since they may change at every boot
//     8        the inode
//     8, 4     seconds since 1970 (signed) and nanoseconds of the birth time; 0 where it is not known
//     4 + n    length and bytes of the file handle (the first four are its type); empty where there is none
//              that lasts
//     4        CRC-32 (the one of zip files) of everything before it
//
// Nothing may follow. A reader refuses a version it does not know: the bytes are kept by whoever saved them
// and are not lost. The identity is the entry's own; a bookmark of a link means the link.
//
// Resolving takes whatever is at the path first, because many editors save a file by putting a new one in
// its place; the bookmark is stale where that is another file. With nothing at the path, a reference that
// follows the file in this process tells where it is; then BookmarkSearch.h looks for its identity, at most at
// 20,000 entries of 200 directories in all, on local mounts of its own file system.
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
