#include "NSScrollView.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "WindowDisplay.h"

#include <algorithm>

namespace quillbox {

void NSClipView::setDocumentView(std::shared_ptr<NSView> view)
{
    if (documentView_)
        documentView_->removeFromSuperview();
    documentView_ = std::move(view);
    if (documentView_)
        addSubview(documentView_);
}

void NSClipView::layout()
{
    if (!documentView_)
        return;
    if (documentView_->translatesAutoresizingMaskIntoConstraints()) {
        // A document without constraints is as wide as its window and as high as its content.
        const double height = documentView_->naturalSize(frame().size.width).height;
        documentView_->setFrame({ {}, { frame().size.width, std::max(height, frame().size.height) } });
    } else {
        NSView::layout();
    }
    scroll(bounds().minY());
    documentView_->visibleRectDidChange();
}

double NSClipView::maximumScroll() const
{
    return documentView_ ? std::max(0.0, documentView_->frame().maxY() - frame().size.height) : 0;
}

void NSClipView::scroll(double toY)
{
    const double y = std::clamp(toY, 0.0, maximumScroll());
    if (y == bounds().minY())
        return;
    setBoundsOrigin({ 0, y });
    setNeedsDisplay();
    documentView_->visibleRectDidChange();
}

void NSClipView::scrollToVisible(NSRect rect)
{
    if (rect.minY() < bounds().minY())
        scroll(rect.minY());
    else if (rect.maxY() > bounds().maxY())
        scroll(rect.maxY() - frame().size.height);
}

std::shared_ptr<NSScrollView> NSScrollView::create()
{
    auto view = std::make_shared<NSScrollView>();
    view->contentView_ = std::make_shared<NSClipView>();
    view->addSubview(view->contentView_);
    return view;
}

void NSScrollView::layout()
{
    NSRect room = insideBorder();
    room.size.width = std::max(0.0, room.size.width - verticalScrollerFrame().size.width);
    contentView_->setFrame(room);
}

NSRect NSScrollView::insideBorder() const
{
    const double border =
        borderType_ == BorderType::noBorder ? 0 : NSApplication::shared().desktop().windows().scrollViewBorder();
    return { { border, border },
             { std::max(0.0, frame().size.width - 2 * border), std::max(0.0, frame().size.height - 2 * border) } };
}

NSRect NSScrollView::verticalScrollerFrame() const
{
    const NSRect room = insideBorder();
    const double width = hasVerticalScroller_
        ? NSApplication::shared().desktop().windows().scrollerWidth(scrollerSize_ == ControlSize::small)
        : 0;
    return { { room.maxX() - width, room.minY() }, { width, room.size.height } };
}

void NSScrollView::setBorderType(BorderType type)
{
    borderType_ = type;
    setNeedsLayout();
    setNeedsDisplay();
}

void NSScrollView::setDrawsBackground(bool draws)
{
    drawsBackground_ = draws;
    setNeedsDisplay();
}

void NSScrollView::setHasVerticalScroller(bool has)
{
    hasVerticalScroller_ = has;
    setNeedsLayout();
}

void NSScrollView::setVerticalScrollerControlSize(ControlSize size)
{
    scrollerSize_ = size;
    setNeedsLayout();
}

} // namespace quillbox
