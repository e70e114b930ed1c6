#pragma once

#include "Result.h"

#include <string>

namespace quillbox {

// Renames a file of ours that can't be understood, so that a new one can take its place and nothing is lost.
// "defaults.plist" becomes "defaults.plist.damaged-20240305-140709", with a number appended if that name is taken; no
// file is replaced. If a symbolic link is at `path`, the file that it leads to is renamed and the link stays. Returns
// the new path.
Result<std::string> setDamagedFileAside(const std::string& path);

} // namespace quillbox
