#pragma once

namespace quillbox {

// The pointer's shape over an area of a view.
enum class NSCursor { arrow, pointingHand, iBeam };

} // namespace quillbox
