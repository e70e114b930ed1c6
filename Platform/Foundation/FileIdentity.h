#pragma once

#include "Result.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quillbox {

// What tells one file from every other on a running system. Inode numbers are used again as soon as a file
// is deleted, so the birth time belongs to it wherever the file system keeps one.
struct FileIdentity {
    struct Time {
        std::int64_t seconds = 0;
        std::uint32_t nanoseconds = 0;
        friend bool operator==(const Time&, const Time&) = default;
    };

    std::uint32_t deviceMajor = 0;
    std::uint32_t deviceMinor = 0;
    std::uint64_t inode = 0;
    std::optional<Time> birth;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

// One look at an entry, not following a link in its last component.
struct FileStatus {
    FileIdentity identity;
    bool isDirectory = false;
    // The mount it was reached through; none where the system doesn't tell.
    std::optional<std::uint64_t> mountId;
    // When its contents, and when anything of it was changed last, counted from 1970; none where the system doesn't
    // tell.
    std::optional<FileIdentity::Time> modified;
    std::optional<FileIdentity::Time> changed;
};

Result<FileStatus> lookAtFile(const std::string& path);
// Looks at what an open descriptor stands for.
Result<FileStatus> lookAtDescriptor(int descriptor);

} // namespace quillbox
