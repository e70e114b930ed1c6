#pragma once

#include "Data.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillbox {

// What one process asks another about a file, and the answer: for mounts that may hang (MountInquiry). Both are small
// texts of bytes that begin with a version; what another version wrote is refused.
struct FileQuestion {
    // What FileManager, URL, Bookmark and FileContents ask where they are not told to ask elsewhere. The number is
    // what the comment says, else 0.
    enum class Kind : std::uint8_t {
        resourceValues = 1, // the keys
        listing, // 1 without hidden entries
        linkTarget,
        identity,
        status, // what stat says; 1 where a link at the end is followed
        access, // the mode, as access takes it
        bookmark, // of the entry
        contents, // the largest size
        beginning, // the most bytes
        canonicalPath, // without links
        movedFile, // the bytes are a bookmark: where its file is around the path
        defaultApplication, // the bytes are a type of content: the desktop entry of who opens it; asked for no path
    };

    Kind kind {};
    std::string path;
    std::uint64_t number = 0;
    std::string bytes;

    // Whether answering it goes through a link at the end of the path.
    bool followsLastLink() const;

    Data encoded() const;
    static std::optional<FileQuestion> decode(const Data& bytes);
};

struct FileAnswer {
    // The system's error number; 0 where there is an answer.
    int error = 0;
    std::uint64_t number = 0;
    std::string bytes;

    Data encoded() const;
    static std::optional<FileAnswer> decode(const Data& bytes);
};

// Nothing longer is sent or taken: a directory of a few million entries.
inline constexpr std::size_t kMostMessageBytes = std::size_t { 256 } << 20;

} // namespace quillbox
