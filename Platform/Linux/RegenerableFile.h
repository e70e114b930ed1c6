#pragma once

#include "Result.h"

#include <string>
#include <string_view>

namespace quillbox {

// Puts a file with that content in the place of whatever file is at `path`: readers see the old one or the new one.
// It is meant for what can be made again from something else: it is not synced, so a crash of the system may empty it.
Result<void> replaceRegenerableFile(const std::string& path, std::string_view content);

} // namespace quillbox
