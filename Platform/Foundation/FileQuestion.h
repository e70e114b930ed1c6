#pragma once

#include "Data.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillbox {

// A question about a file that one process asks another because the file's mount may hang (MountInquiry). The question
// and its answer are encoded as short byte strings that begin with a version; what another version wrote is refused.
struct FileQuestion {
    // The questions of FileManager, URL, Bookmark and FileContents. The comment beside a kind says what `number` means
    // for it; otherwise it is 0.
    enum class Kind : std::uint8_t {
        resourceValues = 1, // the URLResourceKey set
        listing, // 1 leaves out hidden entries
        linkTarget,
        identity,
        status, // what stat() says; 1 follows a link at the end of the path
        access, // the mode that access() takes
        bookmark, // a bookmark of the entry
        contents, // the largest size in bytes
        beginning, // the most bytes to read
        canonicalPath, // see canonicalPath()
        movedFile, // where the file of the bookmark in `bytes` is, in a search around the path
        // The desktop entry that opens the content type in `bytes`, or with 1 all that can, each ended by a NUL. The
        // path has no meaning.
        defaultApplication,
    };

    Kind kind {};
    std::string path;
    std::uint64_t number = 0;
    std::string bytes;

    // Whether answering the question follows a link at the end of the path.
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

// Longer messages are neither sent nor accepted. It is enough for a directory of a few million entries.
inline constexpr std::size_t kMostMessageBytes = std::size_t { 256 } << 20;

} // namespace quillbox
