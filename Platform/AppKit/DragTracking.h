#pragma once

#include "NSDragging.h"
#include "NSView.h"

#include <memory>

namespace quillbox {

// The life of a drag over this program's windows: which view it is over, in which order views hear of it, and when it
// has ended. The display and tests drive one of these and hold no rules of their own. It owns the pasteboard but keeps
// no view alive.
class DragTracking {
public:
    explicit DragTracking(NSPasteboard pasteboard) : pasteboard_(std::move(pasteboard)) { }

    const NSPasteboard& pasteboard() const { return pasteboard_; }
    // Called at the drop, when the data that another program promised has arrived.
    void setPasteboard(NSPasteboard pasteboard) { pasteboard_ = std::move(pasteboard); }

    // The drag is over `view` (null if it is over nothing of ours), at a point in the coordinates of `view`. The
    // destination is the nearest view at or above `view` that accepts a type of the drag; it hears of entering, moving
    // and leaving.
    NSDragOperation move(const std::shared_ptr<NSView>& view, NSPoint location);
    // The drag was dropped where it was last. Returns true if the destination accepted it.
    bool drop();
    // The whole drag is over, wherever it was dropped. For a drag that began here, this is called after the display has
    // finished with the drag's source.
    void end();

private:
    NSDraggingInfo info() const { return { pasteboard_, location_ }; }
    void leave();

    NSPasteboard pasteboard_;
    std::weak_ptr<NSView> destination_;
    // The view that hears of the end: the last destination, even if the drag has left it.
    std::weak_ptr<NSView> lastDestination_;
    NSPoint location_;
    NSDragOperation operation_ = NSDragOperation::none;
};

} // namespace quillbox
