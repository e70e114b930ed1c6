#pragma once

#include <string>

namespace quillbox {

// Returns the beginning of an Exec line that runs the program at this path, whatever characters the path has.
std::string programForExec(const std::string& path);

} // namespace quillbox
