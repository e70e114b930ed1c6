#pragma once

#include <cstddef>
#include <string>

namespace quillbox {

// Makes a directory under `parent` with `count` entries with realistic names, of which one in ten is a directory. It is
// made on first use and kept for later runs. Returns its path.
std::string bigDirectory(const std::string& parent, std::size_t count);

// These do the least that any program must do. Each returns how many entries it saw.
std::size_t listAndLook(const std::string& directory);
// Lists with a large buffer and sorts the names by natural-order keys.
std::size_t listAndSort(const std::string& directory);

} // namespace quillbox
