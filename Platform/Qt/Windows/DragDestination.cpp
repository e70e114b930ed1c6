#include "DragDestination.h"

#include "NSWindow.h"
#include "OfferedFiles.h"
#include "RowDrag.h"

#include <QDropEvent>
#include <QWidget>

#include <algorithm>

namespace quillbox {

namespace {

    // The distance from an edge, in points, at which the pointer makes a scroll view scroll, and the speed.
    constexpr double kEdge = 20;
    constexpr double kLargestEdgePart = 0.25;
    constexpr double kLargestStep = 12;
    constexpr std::chrono::milliseconds kScrollInterval(25);

    // Returns the action that the other program is told. It is one after which that program keeps the original.
    Qt::DropAction harmlessAction(Qt::DropActions offered)
    {
        if (offered & Qt::CopyAction)
            return Qt::CopyAction;
        return offered & Qt::LinkAction ? Qt::LinkAction : Qt::IgnoreAction;
    }

    // How far the clip view, which shows in `room`, scrolls in a step while the pointer is there; 0 where it does not.
    double stepNear(const NSClipView& clip, NSRect room, NSPoint point)
    {
        const double edge = std::min(kEdge, room.size.height * kLargestEdgePart);
        const double above = room.minY() + edge - point.y;
        const double below = point.y - (room.maxY() - edge);
        const double step = above > 0 ? -kLargestStep * above / edge : below > 0 ? kLargestStep * below / edge : 0;
        const double y = clip.bounds().minY();
        return std::clamp(y + step, 0.0, clip.maximumScroll()) == y ? 0 : step;
    }

    NSPoint pointOf(const QDropEvent& event)
    {
        return { event.position().x(), event.position().y() };
    }

} // namespace

void DragDestination::enter(QDragMoveEvent& event)
{
    // An earlier drag may have ended without notice.
    if (tracking_)
        finish();
    move(event);
}

void DragDestination::track(const QDropEvent& event)
{
    const auto* own = dynamic_cast<const RowDrag*>(event.mimeData());
    // Texts that are dragged out of our own windows are not files. A row of the menu is one, and comes from no widget.
    const bool hasFiles = !own && !qobject_cast<QWidget*>(event.source()) && offersFiles(*event.mimeData());
    if (tracking_ && (own ? tracking_ == own->tracking() : !isOwn_ && hasFiles == hasFiles_))
        return;
    if (tracking_)
        finish();
    isOwn_ = own != nullptr;
    ownDrag_ = own;
    hasFiles_ = hasFiles;
    if (own)
        tracking_ = own->tracking();
    else
        tracking_ = std::make_shared<DragTracking>(hasFiles ? NSPasteboard::promising(NSPasteboardTypeFileURL)
                                                            : NSPasteboard());
}

void DragDestination::move(QDragMoveEvent& event)
{
    track(event);
    const Qt::DropAction action = answer(event, pointOf(event));
    event.setDropAction(action);
    event.setAccepted(action != Qt::IgnoreAction);
}

Qt::DropAction DragDestination::answer(QDropEvent& event, NSPoint point)
{
    const Qt::DropAction action = harmlessAction(event.possibleActions());
    if (action == Qt::IgnoreAction) {
        tracking_->move(nullptr, {});
        return action;
    }
    const NSDragOperation operation = moveTo(point);
    if (ownDrag_)
        ownDrag_->showOperation(operation);
    // While the view scrolls under a resting pointer, rows that accept the drop may come under it, but nobody asks
    // again until the pointer moves.
    return operation == NSDragOperation::none && !timer_ ? Qt::IgnoreAction : action;
}

NSDragOperation DragDestination::moveTo(NSPoint point)
{
    const auto window = window_.lock();
    if (!window || !tracking_)
        return NSDragOperation::none;
    point_ = point;
    const std::shared_ptr<NSView> hit = window->attachedSheet() ? nullptr : window->contentView()->hitTest(point);
    const NSDragOperation operation =
        tracking_->move(hit, hit ? window->contentView()->convert({ point, {} }, *hit).origin : NSPoint {});
    scrollNear(hit, point);
    return operation;
}

void DragDestination::scrollNear(const std::shared_ptr<NSView>& view, NSPoint point)
{
    const auto window = window_.lock();
    // The innermost one that can still scroll: past a list's end the page that the list is on goes on.
    for (auto around = view; window && around; around = around->superview()) {
        const auto clip = std::dynamic_pointer_cast<NSClipView>(around);
        const double step = clip ? stepNear(*clip, clip->convert(clip->bounds(), *window->contentView()), point) : 0;
        if (step != 0) {
            scrolled_ = clip;
            timer_ = Clock::current().after(kScrollInterval, [this, step] { scrollStep(step); });
            return;
        }
    }
    timer_.reset();
}

void DragDestination::scrollStep(double step)
{
    const auto clip = scrolled_.lock();
    const auto window = window_.lock();
    if (!clip || !window)
        return;
    clip->scroll(clip->bounds().minY() + step);
    window->layoutIfNeeded();
    // Other rows are under the pointer now.
    const NSDragOperation operation = moveTo(point_);
    if (ownDrag_)
        ownDrag_->showOperation(operation);
}

void DragDestination::leave()
{
    if (tracking_)
        finish();
}

void DragDestination::pointerCame()
{
    if (tracking_ && !isOwn_)
        finish();
}

void DragDestination::drop(QDropEvent& event)
{
    track(event);
    const Qt::DropAction action = answer(event, pointOf(event));
    timer_.reset();
    event.setDropAction(action);
    event.ignore();
    // The data is asked of the program that drops now, whatever was promised before.
    if (!isOwn_ && hasFiles_ && action != Qt::IgnoreAction)
        tracking_->setPasteboard(
            NSPasteboard::ofFiles(droppedFiles(*event.mimeData(), event.source(), widget_.winId())));
    if (tracking_->drop())
        event.accept();
    finish();
}

void DragDestination::finish()
{
    timer_.reset();
    tracking_->move(nullptr, {});
    // A drag of our own ends when its source has finished with it.
    if (!isOwn_)
        tracking_->end();
    tracking_.reset();
}

} // namespace quillbox
