#pragma once

#include "GLibPointer.h"
#include "Result.h"
#include "XdgEnvironment.h"

#include <gio/gio.h>

#include <string>

namespace quillbox {

// The user's default application for the file or directory at the path. On a mount that may hang, the file is looked
// at in time (MountInquiry) rather than by GIO, and its type told by its name and beginning, as GIO does.
//
// GIO looks at the program of each application that it considers. While one that is installed lies on a mount that does
// not answer, GIO is asked in the helper process, which may not come back.
Result<GLibObject<GAppInfo>> defaultHandler(const std::string& path, const XdgEnvironment& environment);

// ETIMEDOUT where the entry, or a program that GIO looks for when it reads the entry, is on a mount that does not
// answer. A program that is not there is no error.
Result<void> answersInTime(const std::string& entryPath);

} // namespace quillbox
