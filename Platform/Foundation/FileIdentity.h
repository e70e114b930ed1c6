#pragma once

#include "Result.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quillbox {

// Tells one file from every other on a running system. Inode numbers are used again as soon as a file is deleted, so
// the birth time belongs to the identity wherever the file system keeps one.
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

// What one look at an entry tells. A link in its last component is not followed.
struct FileStatus {
    FileIdentity identity;
    bool isDirectory = false;
    // The mount through which the file was reached; none if the system doesn't tell.
    std::optional<std::uint64_t> mountId;
    // When its contents were last changed, and when anything about it was, counted from 1970; none if the system
    // doesn't tell.
    std::optional<FileIdentity::Time> modified;
    std::optional<FileIdentity::Time> changed;
};

Result<FileStatus> lookAtFile(const std::string& path);
// Looks at what an open descriptor stands for.
Result<FileStatus> lookAtDescriptor(int descriptor);

} // namespace quillbox
