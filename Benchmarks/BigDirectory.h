#pragma once

#include <cstddef>
#include <string>

namespace quillbox {

// A directory of `count` entries with names as people have them, one in ten a directory, under
// `parent`. Made on first use and kept: the next run finds it. Returns its path.
std::string bigDirectory(const std::string& parent, std::size_t count);

// What any program must do at the least. Each returns how many entries it saw.
// Lists with a large buffer and looks at each entry with one statx.
std::size_t listAndLook(const std::string& directory);
// Lists with a large buffer and sorts the names by natural-order keys.
std::size_t listAndSort(const std::string& directory);

} // namespace quillbox
