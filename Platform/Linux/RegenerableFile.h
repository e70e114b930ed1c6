#pragma once

#include "Result.h"

#include <string>
#include <string_view>

namespace quillbox {

// Replaces the file at `path` by one with this content; readers see either the old file or the new one. It is meant for
// files that can be made again from something else: the file is not synced, so a crash of the system may leave it
// empty.
Result<void> replaceRegenerableFile(const std::string& path, std::string_view content);

} // namespace quillbox
