#pragma once

#include "NSImage.h"

#include <optional>

namespace quillbox {

// The size of every icon in a menu row, in points.
inline constexpr NSSize menuIconSize { 16, 16 };
inline constexpr NSRect menuIconRect { { 0, 0 }, menuIconSize };

// The red dot on rows that stand for something missing or failed. It is looked up on first use; none if the system has
// no such picture.
const std::optional<NSImage>& missingItemIcon();

} // namespace quillbox
