#pragma once

#include "PathRoute.h"
#include "Result.h"

#include <string>

#include <sys/stat.h>

namespace quillbox {

// Returns what stat() says of the path, or lstat() if a link at its end is not to be followed. It is for callers that
// need more than FileManager and URL tell. On a mount that may hang, the answer comes in bounded time or the error is
// ETIMEDOUT (MountInquiry).
Result<struct stat> statusOfPath(const std::string& path, LastLink lastLink = LastLink::followed);
// Returns whether access() allows `mode`, with the same bound.
bool isAccessible(const std::string& path, int mode);

} // namespace quillbox
