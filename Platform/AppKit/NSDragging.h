#pragma once

#include "NSGeometry.h"
#include "NSPasteboard.h"

namespace quillbox {

class NSView;

// What a drop does, or that it does nothing.
enum class NSDragOperation : unsigned { none = 0, copy = 1, move = 16, deleteOperation = 32 };

// A drag as its destination sees it. It is valid only during the call that gets it.
struct NSDraggingInfo {
    const NSPasteboard& draggingPasteboard;
    // In the destination's coordinates.
    NSPoint draggingLocation;
};

} // namespace quillbox
