#include "MenuTracking.h"

#include "MountInquiry.h"
#include "NSAlert.h"
#include "NSApplication.h"

namespace quillbox {

MenuTracking::~MenuTracking()
{
    closeAll();
}

void MenuTracking::tellAboutToOpen(NSMenu& menu)
{
    if (const auto delegate = menu.delegate()) {
        delegate->menuNeedsUpdate(menu);
        delegate->menuWillOpen(menu);
    }
}

bool MenuTracking::open(std::shared_ptr<NSMenu> menu, std::shared_ptr<NSMenu> reserve)
{
    if (isOpen() || NSAlert::isAnyRunning())
        return false;
    MountInquiry::beginOpening();
    tellAboutToOpen(*menu);
    levels_.push_back(std::move(menu));
    if (reserve && levels_.front()->itemArray().empty()) {
        closeAll();
        return open(std::move(reserve));
    }
    return true;
}

bool MenuTracking::openSubmenu(std::size_t level, const std::shared_ptr<NSMenuItem>& item)
{
    if (level >= levels_.size() || !item->hasSubmenu() || item->menu() != levels_[level].get())
        return false;
    if (level + 1 < levels_.size() && levels_[level + 1] == item->submenu())
        return true;
    closeToLevelCount(level + 1);
    const std::shared_ptr<NSMenu> submenu = item->submenu();
    tellAboutToOpen(*submenu);
    levels_.push_back(submenu);
    return true;
}

bool MenuTracking::openMenuForItem(std::size_t level, const std::shared_ptr<NSMenuItem>& item)
{
    const auto delegate = isOpen() ? levels_.front()->delegate() : nullptr;
    if (!delegate || level >= levels_.size() || item->menu() != levels_[level].get())
        return false;
    std::shared_ptr<NSMenu> menu = delegate->menuForItem(item);
    if (!menu)
        return false;
    closeToLevelCount(level + 1);
    tellAboutToOpen(*menu);
    levels_.push_back(std::move(menu));
    return true;
}

void MenuTracking::closeToLevelCount(std::size_t count)
{
    while (levels_.size() > count) {
        const std::shared_ptr<NSMenu> menu = std::move(levels_.back());
        levels_.pop_back();
        if (const auto delegate = menu->delegate())
            delegate->menuDidClose(*menu);
    }
}

bool MenuTracking::choose(std::shared_ptr<NSMenuItem> item, Choice choice)
{
    const bool isAlternate = choice == Choice::alternate && item->alternateAction();
    const Selector* action = isAlternate ? item->alternateAction() : item->action();
    if (!action)
        return false;
    const std::shared_ptr<NSObject> target = item->target();
    if (onTakeOffScreen)
        onTakeOffScreen();
    closeAll();
    NSApplication::shared().sendAction(action, target, item);
    return true;
}

} // namespace quillbox
