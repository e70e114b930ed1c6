#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

namespace quillbox {

// The names that the directory's ".hidden" file lists, one a line: file managers show them as hidden. Empty
// where there is no such file. `directory` is an open descriptor, or AT_FDCWD with `path` naming the file.
std::unordered_set<std::string> hiddenNames(int directory, const char* path = ".hidden");

// Hidden by its own name: it begins with a dot.
inline bool isDotName(std::string_view name)
{
    return name.starts_with('.');
}

} // namespace quillbox
