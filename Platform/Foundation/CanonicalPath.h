#pragma once

#include "Result.h"

#include <string>

namespace quillbox {

// Returns the one path that the kernel would give for what `path` leads to: absolute, without links, ".", ".." or
// doubled slashes. A path is brought into this form before it leaves the program or is compared with another program's
// paths: ".." behind a link to a directory leads elsewhere than its text says, and other programs shorten such paths by
// their text.
//
// Fails if nothing is at the path or a directory on the way can't be searched.
Result<std::string> canonicalPath(const std::string& path);

// Returns the path with its directory in that form, for what is to be shown or dragged itself: a link at the end of the
// path is not followed, and may lead nowhere.
Result<std::string> pathInCanonicalDirectory(const std::string& path);

} // namespace quillbox
