#include "NSScrollView.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "WindowDisplay.h"

#include <algorithm>
#include <utility>

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
        // A document without constraints is as wide as its clip view and at least as high as its content.
        const double width = frame().size.width;
        documentView_->setFrame({ {}, { width, std::max(documentHeight(width), frame().size.height) } });
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

double NSClipView::documentHeight(double width) const
{
    if (!documentView_)
        return 0;
    const double natural = documentView_->naturalSize(width).height;
    return documentView_->constraints().empty() ? natural : documentView_->fittingSize(width, std::nullopt).height;
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
    if (frame().size.height <= 0)
        return;
    if (rect.size.height > frame().size.height) {
        if (rect.minY() <= bounds().minY() && rect.maxY() >= bounds().maxY())
            return;
        rect.size.height = frame().size.height;
    }
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
    if (autohidesScrollers_) {
        const bool isScrollable = contentView_->documentHeight(room.size.width) > room.size.height;
        if (std::exchange(isScrollable_, isScrollable) != isScrollable)
            setNeedsDisplay();
    }
    room.size.width = std::max(0.0, room.size.width - verticalScrollerFrame().size.width);
    contentView_->setFrame(room);
}

NSSize NSScrollView::naturalSize(double widthLimit) const
{
    if (!autohidesScrollers_)
        return { kNoNaturalLength, kNoNaturalLength };
    return { kNoNaturalLength, contentView_->documentHeight(widthLimit) };
}

NSSize NSScrollView::leastSize() const
{
    const auto& document = contentView_->documentView();
    const double width = document ? document->leastSize().width : 0;
    if (autohidesScrollers_)
        return { width, 0 };
    constexpr double kFewestRows = 4;
    WindowDisplay& display = NSApplication::shared().desktop().windows();
    const double borders = 2 * border();
    return { width + verticalScrollerFrame().size.width + borders, kFewestRows * display.tableRowHeight() + borders };
}

double NSScrollView::border() const
{
    return borderType_ == BorderType::noBorder ? 0 : NSApplication::shared().desktop().windows().scrollViewBorder();
}

NSRect NSScrollView::insideBorder() const
{
    const double width = border();
    return { { width, width },
             { std::max(0.0, frame().size.width - 2 * width), std::max(0.0, frame().size.height - 2 * width) } };
}

NSRect NSScrollView::verticalScrollerFrame() const
{
    const NSRect room = insideBorder();
    const double width = showsVerticalScroller()
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

void NSScrollView::setAutohidesScrollers(bool autohides)
{
    autohidesScrollers_ = autohides;
    setNeedsLayout();
}

void NSScrollView::setVerticalScrollerControlSize(ControlSize size)
{
    scrollerSize_ = size;
    setNeedsLayout();
}

} // namespace quillbox
