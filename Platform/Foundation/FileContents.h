#pragma once

#include "Data.h"
#include "Result.h"

#include <cstddef>
#include <string>

#include <sys/types.h>

namespace quillbox {

// Reads a whole file. It must be a regular file of at most `maximumSize` bytes; the error is EFBIG for a larger one,
// EISDIR for a directory, and EINVAL for pipes and devices, which are never waited for.
Result<Data> readFile(const std::string& path, std::size_t maximumSize);

// Reads at most `maximumSize` bytes from the beginning of a small file, whose path is relative to `directory` (a
// descriptor or AT_FDCWD). Empty if there is no such regular file.
std::string readSmallFile(int directory, const char* path, std::size_t maximumSize);

// Returns the path that the symbolic links at `path` lead to in the end, whether or not something is there. Only the
// last component is followed; the file system itself follows links in the others. Fails with ELOOP if the links lead in
// a circle.
Result<std::string> followingLinks(const std::string& path);

// Replaces a file as a whole: the bytes go to a temporary file beside it, which is synced and renamed over the old one.
// A symbolic link is followed and stays. On failure the old file is unchanged and nothing is left behind; what a killed
// process left is removed by the next call. Missing directories above the file are made, with mode 0700, except where a
// link leads. A file system that refuses to set the mode causes no failure as long as nobody gets more rights than
// `mode` gives.
Result<void> replaceFile(const std::string& path, const Data& bytes, mode_t mode);

} // namespace quillbox
