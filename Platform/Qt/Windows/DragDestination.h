#pragma once

#include "Clock.h"
#include "DragTracking.h"
#include "NSScrollView.h"

#include <memory>

class QDragMoveEvent;
class QDropEvent;

namespace quillbox {

class NSWindow;

// What the toolkit says of drags over one window, as one DragTracking a drag: that of the drag itself where it
// began in this program, else one of the files that it carries. While the drag rests near the upper or lower edge
// of a scroll view, that scrolls. Owned by the window's presenter.
class DragDestination {
public:
    explicit DragDestination(std::weak_ptr<NSWindow> window) : window_(std::move(window)) { }

    // Also for entering. Accepts the event with the drop action, or ignores it.
    void move(QDragMoveEvent& event);
    void leave();
    void drop(QDropEvent& event);

private:
    NSDragOperation moveTo(NSPoint point);
    // Scrolls, and goes on until the drag is elsewhere or the end is reached.
    void scrollNear(const std::shared_ptr<NSView>& view, NSPoint point);
    void scrollStep(double step);
    void finish();

    std::weak_ptr<NSWindow> window_;
    std::shared_ptr<DragTracking> tracking_;
    bool isOwn_ = false;
    NSPoint point_;
    std::weak_ptr<NSClipView> scrolled_;
    std::unique_ptr<Clock::Timer> timer_;
};

} // namespace quillbox
