#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

namespace quillbox {

// Reads the names that the directory's ".hidden" file lists, one a line; file managers treat them as hidden. Empty if
// there is no such file. `directory` is an open descriptor, or AT_FDCWD with `path` naming the file.
std::unordered_set<std::string> hiddenNames(int directory, const char* path = ".hidden");

// A name that begins with a dot is hidden by itself.
inline bool isDotName(std::string_view name)
{
    return name.starts_with('.');
}

} // namespace quillbox
