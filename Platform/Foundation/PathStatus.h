#pragma once

#include "PathRoute.h"
#include "Result.h"

#include <string>

#include <sys/stat.h>

namespace quillbox {

// What stat() says of a path (lstat() where a link at its end is not followed), and access(): for whoever needs more
// than FileManager and URL tell. On a mount that may hang the answer comes in time or is ETIMEDOUT (MountInquiry).
Result<struct stat> statusOfPath(const std::string& path, LastLink lastLink = LastLink::followed);
// `mode` as access() takes it.
bool isAccessible(const std::string& path, int mode);

} // namespace quillbox
