#include "NSStatusItem.h"

#include "Desktop.h"
#include "Installed.h"
#include "NSApplication.h"

namespace quillbox {

NSStatusItem::~NSStatusItem()
{
    if (menu_ && Installed<Desktop>::current())
        NSApplication::shared().desktop().hideStatusItem(*this);
}

void NSStatusItem::setMenu(std::shared_ptr<NSMenu> menu)
{
    menu_ = std::move(menu);
    NSApplication::shared().desktop().showStatusItem(*this);
}

NSStatusBar& NSStatusBar::systemStatusBar()
{
    static NSStatusBar bar;
    return bar;
}

std::shared_ptr<NSStatusItem> NSStatusBar::statusItem(double withLength)
{
    return std::make_shared<NSStatusItem>(withLength);
}

} // namespace quillbox
