#include "NSTabView.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "NSWindow.h"
#include "WindowDisplay.h"

namespace quillbox {

void NSTabView::addTabViewItem(std::shared_ptr<NSTabViewItem> item)
{
    item->view()->setHidden(true);
    addSubview(item->view());
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
        items_[static_cast<std::size_t>(selected_)]->view()->setHidden(true);
    selected_ = at;
    const std::shared_ptr<NSTabViewItem> item = items_[static_cast<std::size_t>(at)];
    item->view()->setHidden(false);
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

void NSTabView::layout()
{
    for (const auto& item : items_)
        item->view()->setFrame(contentRect());
}

} // namespace quillbox
