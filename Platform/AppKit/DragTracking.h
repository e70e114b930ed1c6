#pragma once

#include "NSDragging.h"
#include "NSView.h"

#include <memory>

namespace quillbox {

// The life of a drag over this program's windows: which view it is over, in what order views hear of it, and
// when it has ended. The display and tests drive one of these and hold no rule of their own. The pasteboard is
// kept alive by this object; views are not.
class DragTracking {
public:
    explicit DragTracking(NSPasteboard pasteboard) : pasteboard_(std::move(pasteboard)) { }

    const NSPasteboard& pasteboard() const { return pasteboard_; }
    // What another program promised has arrived, at the drop.
    void setPasteboard(NSPasteboard pasteboard) { pasteboard_ = std::move(pasteboard); }

    // The drag is over `view` (null: over nothing of ours), at a point of `view`'s coordinates. The destination
    // is the nearest view at or above it that takes a type of the drag; it hears of entering, moving and leaving.
    NSDragOperation move(const std::shared_ptr<NSView>& view, NSPoint location);
    // Let go of where it was last: true if the destination took it.
    bool drop();
    // The whole drag is over, wherever it was dropped. For a drag that began here this is called after the
    // display has finished with the drag's source.
    void end();

private:
    NSDraggingInfo info() const { return { pasteboard_, location_ }; }
    void leave();

    NSPasteboard pasteboard_;
    std::weak_ptr<NSView> destination_;
    // Who hears of the end: the last destination, also when the drag has left it.
    std::weak_ptr<NSView> lastDestination_;
    NSPoint location_;
    NSDragOperation operation_ = NSDragOperation::none;
};

} // namespace quillbox
