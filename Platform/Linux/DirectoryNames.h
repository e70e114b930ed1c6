#pragma once

#include "Result.h"

#include <string>
#include <vector>

namespace quillbox {

// The names in a directory in the order of their bytes, without "." and "..". Fails where the directory can't be read
// to its end; see isAbsence() for whether there is one at all.
Result<std::vector<std::string>> sortedNames(const std::string& directory);

// Whether a system call failed with that number because nothing is at the path, now or at the next look. Any other
// number means that something may be there which can't be read at the moment.
bool isAbsence(int errorNumber);

} // namespace quillbox
