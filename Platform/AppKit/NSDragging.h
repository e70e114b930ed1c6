#pragma once

#include "NSGeometry.h"
#include "NSPasteboard.h"

namespace quillbox {

class NSView;

// What a drop does, or none.
enum class NSDragOperation : unsigned { none = 0, copy = 1, move = 16, deleteOperation = 32 };

// A drag as its destination sees it. Valid during the call.
struct NSDraggingInfo {
    const NSPasteboard& draggingPasteboard;
    // In the coordinates of the destination.
    NSPoint draggingLocation;
};

} // namespace quillbox
