#pragma once

#include <string>

namespace quillbox {

// The beginning of an entry's Exec that runs the program at that path, whatever characters it has.
std::string programForExec(const std::string& path);

} // namespace quillbox
