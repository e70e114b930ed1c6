#include "NSTabView.h"

#include "Desktop.h"
#include "NSApplication.h"
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
    if (const auto delegate = delegate_.lock())
        delegate->tabViewDidSelect(*this, *item);
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
