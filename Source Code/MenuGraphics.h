#pragma once

#include "NSImage.h"

#include <optional>

namespace quillbox {

// The size of every icon on a menu row, in points.
inline constexpr NSSize menuIconSize { 16, 16 };
inline constexpr NSRect menuIconRect { { 0, 0 }, menuIconSize };

// The red dot on rows that stand for something missing or failed; none where the system has no such
// picture. Made on first use.
const std::optional<NSImage>& missingItemIcon();

} // namespace quillbox
