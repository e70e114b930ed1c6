#include "DragDestination.h"

#include "NSWindow.h"
#include "RowDrag.h"

#include <QDropEvent>

#include <algorithm>

namespace quillbox {

namespace {

    // How near to an edge the pointer makes a scroll view scroll, in points, and how fast.
    constexpr double kEdge = 20;
    constexpr double kLargestEdgePart = 0.25;
    constexpr double kLargestStep = 12;
    constexpr std::chrono::milliseconds kScrollInterval(25);

    // As the bytes came, so that a path keeps them.
    std::vector<std::string> urlTexts(const QMimeData& data)
    {
        std::vector<std::string> texts;
        for (const QByteArray& line : data.data(QStringLiteral("text/uri-list")).split('\n')) {
            const QByteArray text = line.trimmed();
            if (!text.isEmpty() && !text.startsWith('#'))
                texts.push_back(text.toStdString());
        }
        return texts;
    }

    // Whatever the drop does here, to where the drag comes from it is no more than a copy.
    Qt::DropAction dropAction(NSDragOperation operation, Qt::DropActions offered)
    {
        if (operation == NSDragOperation::none)
            return Qt::IgnoreAction;
        return offered & Qt::CopyAction || !(offered & Qt::LinkAction) ? Qt::CopyAction : Qt::LinkAction;
    }

    NSPoint pointOf(const QDropEvent& event)
    {
        return { event.position().x(), event.position().y() };
    }

} // namespace

void DragDestination::move(QDragMoveEvent& event)
{
    const auto* own = dynamic_cast<const RowDrag*>(event.mimeData());
    if (own)
        tracking_ = own->tracking();
    else if (!tracking_ || isOwn_)
        tracking_ = std::make_shared<DragTracking>(NSPasteboard::ofFiles(urlTexts(*event.mimeData())));
    isOwn_ = own != nullptr;
    const NSDragOperation operation = moveTo(pointOf(event));
    if (own)
        own->showOperation(operation);
    const Qt::DropAction action = dropAction(operation, event.possibleActions());
    event.setDropAction(action);
    event.setAccepted(action != Qt::IgnoreAction);
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
    std::shared_ptr<NSClipView> clip;
    for (auto around = view; around && !clip; around = around->superview())
        clip = std::dynamic_pointer_cast<NSClipView>(around);
    const auto window = window_.lock();
    if (!clip || !window) {
        timer_.reset();
        return;
    }
    const NSRect room = clip->convert(clip->bounds(), *window->contentView());
    const double edge = std::min(kEdge, room.size.height * kLargestEdgePart);
    const double above = room.minY() + edge - point.y;
    const double below = point.y - (room.maxY() - edge);
    const double step = above > 0 ? -kLargestStep * above / edge : below > 0 ? kLargestStep * below / edge : 0;
    const double y = clip->bounds().minY();
    if (step == 0 || std::clamp(y + step, 0.0, clip->maximumScroll()) == y) {
        timer_.reset();
        return;
    }
    scrolled_ = clip;
    timer_ = Clock::current().after(kScrollInterval, [this, step] { scrollStep(step); });
}

void DragDestination::scrollStep(double step)
{
    const auto clip = scrolled_.lock();
    const auto window = window_.lock();
    if (!clip || !window)
        return;
    clip->scroll(clip->bounds().minY() + step);
    window->layoutIfNeeded();
    // Other rows have come under the pointer.
    moveTo(point_);
}

void DragDestination::leave()
{
    if (!tracking_)
        return;
    tracking_->move(nullptr, {});
    finish();
}

void DragDestination::drop(QDropEvent& event)
{
    if (!tracking_)
        return;
    const Qt::DropAction action = dropAction(moveTo(pointOf(event)), event.possibleActions());
    timer_.reset();
    event.setDropAction(action);
    event.setAccepted(tracking_->drop());
    finish();
}

void DragDestination::finish()
{
    timer_.reset();
    // A drag of our own ends when its source is done with it.
    if (!isOwn_)
        tracking_->end();
    tracking_.reset();
}

} // namespace quillbox
