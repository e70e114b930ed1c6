#pragma once

#include "GLibPointer.h"
#include "Result.h"
#include "XdgEnvironment.h"

#include <gio/gio.h>

#include <string>
#include <vector>

namespace quillbox {

// Returns the user's default application for the file or directory at the path. A file on a mount that may hang is
// looked at in bounded time (MountInquiry) instead of by GIO; its type then follows from its name and first bytes, as
// in GIO.
//
// GIO looks at the program of each application that it considers. While an installed program lies on a mount that does
// not answer, GIO is asked in the helper process, which may never return.
Result<GLibObject<GAppInfo>> defaultHandler(const std::string& path, const XdgEnvironment& environment);

// Fails with ETIMEDOUT if the entry, or a program that GIO looks for when it reads the entry, is on a mount that does
// not answer. A missing program is no error.
Result<void> answersInTime(const std::string& entryPath);

// Returns the desktop entries of all applications that can open what is at the path, the default one first. The same
// bounds apply.
Result<std::vector<std::string>> handlerEntries(const std::string& path, const XdgEnvironment& environment);

} // namespace quillbox
