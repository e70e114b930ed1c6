#pragma once

#include <cstdint>
#include <string>

namespace quillbox {

// What one stat call told of what a path leads to. It is all zero where nothing is there.
struct FileStamp {
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    // Nanoseconds since 1970.
    std::int64_t modified = 0;

    static FileStamp of(const std::string& path);
    // A stamp to be kept and compared with later ones. Where the file was written so short a time ago that it may be
    // written again under the same stamp, this one is equal to no real one.
    static FileStamp settledOf(const std::string& path);
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

} // namespace quillbox
