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

// What the toolkit says of drags over one window, as one DragTracking a drag: that of the drag itself where it
// began in this program, else one of the files that it promises, whose data is asked for at the drop. Another program
// hears of a copy or a link, or that it can't be dropped here: never of a move, after which it might delete what was
// dropped. While the drag rests near the upper or lower edge of a scroll view, that scrolls. Owned by the window's
// presenter.
class DragDestination {
public:
    // `widget` shows the window, and outlives this.
    DragDestination(std::weak_ptr<NSWindow> window, const QWidget& widget) : window_(std::move(window)), widget_(widget)
    {
    }

    // Each accepts the event with the drop action, or ignores it.
    void enter(QDragMoveEvent& event);
    void move(QDragMoveEvent& event);
    void leave();
    // Something came to the window that can't come while another program holds the pointer: its drag has ended
    // without a word.
    void pointerCame();
    void drop(QDropEvent& event);

private:
    void track(const QDropEvent& event);
    // The answer to the drag; nothing of ours hears of one that offers nothing that we give.
    Qt::DropAction answer(QDropEvent& event, NSPoint point);
    NSDragOperation moveTo(NSPoint point);
    // Scrolls, and goes on until the drag is elsewhere or the end is reached.
    void scrollNear(const std::shared_ptr<NSView>& view, NSPoint point);
    void scrollStep(double step);
    void finish();

    std::weak_ptr<NSWindow> window_;
    const QWidget& widget_;
    std::shared_ptr<DragTracking> tracking_;
    bool isOwn_ = false;
    // Goes with the toolkit's drag.
    QPointer<const RowDrag> ownDrag_;
    // Whether the other program's drag promises files.
    bool hasFiles_ = false;
    NSPoint point_;
    std::weak_ptr<NSClipView> scrolled_;
    std::unique_ptr<Clock::Timer> timer_;
};

} // namespace quillbox
