#pragma once

#include "Data.h"
#include "Result.h"

#include <cstddef>
#include <string>

#include <sys/types.h>

namespace quillbox {

// Whole files. What is read must be a regular file of at most `maximumSize` bytes (EFBIG otherwise, EISDIR
// for a directory, EINVAL for pipes and devices, which are never waited for).
Result<Data> readFile(const std::string& path, std::size_t maximumSize);

// What is found of at most `maximumSize` bytes of a small helper file, named in `directory` (a descriptor or
// AT_FDCWD); empty where there is no such regular file.
std::string readSmallFile(int directory, const char* path, std::size_t maximumSize);

// Where symbolic links at that path lead in the end, whether or not something is there. Only the last component is
// followed; the file system follows the others itself. Fails with ELOOP where they lead in a circle.
Result<std::string> followingLinks(const std::string& path);

// Replaces the file whole: the bytes go to a temporary file beside it, are synced, and take the old file's
// place. A symbolic link is followed and stays. On failure the old file stays as it was and nothing is left behind;
// what a killed process left is removed by the next call. Missing directories above are made, with mode 0700, but not
// where a link leads. A file system that refuses to set the mode is no failure where nobody has more rights than
// `mode` gives.
Result<void> replaceFile(const std::string& path, const Data& bytes, mode_t mode);

} // namespace quillbox
