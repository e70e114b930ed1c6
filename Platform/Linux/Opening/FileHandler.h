#pragma once

#include "GLibPointer.h"
#include "Result.h"

#include <gio/gio.h>

#include <string>

namespace quillbox {

// The user's default application for the file or directory at the path. On a mount that may hang, the file is looked
// at in time (MountInquiry) rather than by GIO, and its type told by its name and beginning, as GIO does.
Result<GLibObject<GAppInfo>> defaultHandler(const std::string& path);

} // namespace quillbox
