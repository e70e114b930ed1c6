#pragma once

#include "Clock.h"
#include "DragTracking.h"
#include "NSScrollView.h"

#include "RowDrag.h"

#include <QPointer>

#include <memory>

class QDragMoveEvent;
class QDropEvent;
class QWidget;

namespace quillbox {

class NSWindow;

// Turns the toolkit's drag events over one window into calls of one DragTracking for each drag. A drag that began in
// this program brings its own tracking; for another one, a tracking of the files that it promises is made, and their
// data is asked for at the drop. Another program is told of a copy or a link, or that it can't drop here, but never of
// a move, after which it might delete what was dropped. While the drag rests near the upper or lower edge of a scroll
// view, that scrolls. The window's presenter owns this object.
class DragDestination {
public:
    // `widget` shows the window and must outlive this object.
    DragDestination(std::weak_ptr<NSWindow> window, const QWidget& widget) : window_(std::move(window)), widget_(widget)
    {
    }

    // Each accepts the event with the drop action, or ignores it.
    void enter(QDragMoveEvent& event);
    void move(QDragMoveEvent& event);
    void leave();
    // Must be called on an event that can't occur while another program holds the pointer: its drag has ended without
    // notice.
    void pointerCame();
    void drop(QDropEvent& event);

private:
    void track(const QDropEvent& event);
    // Returns the answer to the drag. Views don't hear of a drag that permits none of the actions that we give.
    Qt::DropAction answer(QDropEvent& event, NSPoint point);
    NSDragOperation moveTo(NSPoint point);
    // Scrolls, and repeats that until the drag is elsewhere or the end is reached.
    void scrollNear(const std::shared_ptr<NSView>& view, NSPoint point);
    void scrollStep(double step);
    void finish();

    std::weak_ptr<NSWindow> window_;
    const QWidget& widget_;
    std::shared_ptr<DragTracking> tracking_;
    bool isOwn_ = false;
    // Cleared when the toolkit deletes its drag.
    QPointer<const RowDrag> ownDrag_;
    // Whether the other program's drag promises files.
    bool hasFiles_ = false;
    NSPoint point_;
    std::weak_ptr<NSClipView> scrolled_;
    std::unique_ptr<Clock::Timer> timer_;
};

} // namespace quillbox
