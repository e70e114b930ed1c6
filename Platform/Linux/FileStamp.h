#pragma once

#include <cstdint>
#include <string>

namespace quillbox {

// The result of one stat call on what a path leads to. It is all zero if nothing is there.
struct FileStamp {
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    // Nanoseconds since 1970.
    std::int64_t modified = 0;

    static FileStamp of(const std::string& path);
    // Returns a stamp to keep and compare with later ones. If the file was written so recently that another change
    // might leave it with the same stamp, the result is equal to no real stamp.
    static FileStamp settledOf(const std::string& path);
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

} // namespace quillbox
