#include "NSTabView.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "NSScrollView.h"
#include "NSWindow.h"
#include "WindowDisplay.h"

#include <algorithm>

namespace quillbox {

NSTabViewItem::NSTabViewItem(std::string label)
    : label_(std::move(label)),
      view_(std::make_shared<NSView>()),
      scrollView_(NSScrollView::create())
{
    scrollView_->setDrawsBackground(false);
    scrollView_->setHasVerticalScroller(true);
    scrollView_->setVerticalScrollerControlSize(NSScrollView::ControlSize::small);
    scrollView_->setAutohidesScrollers(true);
    scrollView_->setDocumentView(view_);
}

void NSTabView::addTabViewItem(std::shared_ptr<NSTabViewItem> item)
{
    item->scrollView()->setHidden(true);
    addSubview(item->scrollView());
    items_.push_back(std::move(item));
    setNeedsDisplay();
    if (selected_ < 0)
        selectTabViewItem(0);
}

void NSTabView::selectTabViewItem(int at)
{
    if (at == selected_ || at < 0 || at >= static_cast<int>(items_.size()))
        return;
    if (selected_ >= 0)
        items_[static_cast<std::size_t>(selected_)]->scrollView()->setHidden(true);
    selected_ = at;
    const std::shared_ptr<NSTabViewItem> item = items_[static_cast<std::size_t>(at)];
    item->scrollView()->setHidden(false);
    setNeedsDisplay();
    const auto shownIn = window();
    const auto responder = shownIn ? shownIn->firstResponder() : nullptr;
    if (responder && responder->isHiddenOrHasHiddenAncestor())
        shownIn->makeFirstResponder(shared_from_this());
    if (const auto delegate = delegate_.lock())
        delegate->tabViewDidSelect(*this, *item);
}

void NSTabView::userSelectsTabViewItem(int at)
{
    const int count = static_cast<int>(items_.size());
    if (isHeld() || count == 0)
        setNeedsDisplay();
    else
        selectTabViewItem((at % count + count) % count);
}

NSRect NSTabView::contentRect() const
{
    const NSEdgeInsets insets = NSApplication::shared().desktop().windows().tabViewInsets();
    return { { insets.left, insets.top },
             { std::max(0.0, frame().size.width - insets.left - insets.right),
               std::max(0.0, frame().size.height - insets.top - insets.bottom) } };
}

NSSize NSTabView::naturalSize(double widthLimit) const
{
    const NSEdgeInsets insets = NSApplication::shared().desktop().windows().tabViewInsets();
    double height = 0;
    for (const auto& item : items_)
        height = std::max(height, item->scrollView()->naturalSize(widthLimit - insets.left - insets.right).height);
    return { kNoNaturalLength, height + insets.top + insets.bottom };
}

NSSize NSTabView::leastSize() const
{
    const NSEdgeInsets insets = NSApplication::shared().desktop().windows().tabViewInsets();
    double width = 0;
    for (const auto& item : items_)
        width = std::max(width, item->scrollView()->leastSize().width);
    return { width + insets.left + insets.right, 0 };
}

void NSTabView::layout()
{
    for (const auto& item : items_)
        item->scrollView()->setFrame(contentRect());
}

} // namespace quillbox
