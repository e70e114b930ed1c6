#pragma once

#include <cstdint>
#include <vector>

namespace quillbox {

// A byte string.
using Data = std::vector<std::uint8_t>;

} // namespace quillbox
