#pragma once

#include "Result.h"

#include <string>

namespace quillbox {

// The one path that the kernel would give for what `path` leads to: absolute, with no links, ".", ".." or doubled
// slashes in it. What leaves the program and what is compared with another program's paths is written so: ".." behind
// a link to a directory leads elsewhere than its text says, and others tidy it up by the text.
//
// Fails where nothing is there or a directory on the way can't be searched.
Result<std::string> canonicalPath(const std::string& path);

} // namespace quillbox
