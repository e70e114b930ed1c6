#pragma once

#include "Result.h"

#include <string>
#include <vector>

namespace quillbox {

// Returns the names in a directory in the order of their bytes, without "." and "..". Fails if the directory can't be
// read to its end; isAbsence() tells whether it is only missing.
Result<std::vector<std::string>> sortedNames(const std::string& directory);

// Whether a system call failed with this error number because nothing is at the path, now or at the next look. Any
// other number means that something may be there that can't be read at the moment.
bool isAbsence(int errorNumber);

} // namespace quillbox
