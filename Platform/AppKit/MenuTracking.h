#pragma once

#include "NSMenu.h"

#include <functional>
#include <memory>
#include <vector>

namespace quillbox {

// The life of an open menu: which menus are open, in what order their delegates hear of it, and how a
// choice is carried out. Every way of showing a menu (our own popups, a host that draws it, a test) drives
// one of these and holds no rule of its own.
//
// Levels are numbered from 0, the menu at the top. Open menus are kept alive by this object.
class MenuTracking {
public:
    MenuTracking() = default;
    ~MenuTracking();
    MenuTracking(const MenuTracking&) = delete;
    MenuTracking& operator=(const MenuTracking&) = delete;

    bool isOpen() const { return !levels_.empty(); }
    std::size_t levelCount() const { return levels_.size(); }
    const std::shared_ptr<NSMenu>& menu(std::size_t level) const { return levels_[level]; }

    // Opens a menu at the top: menuNeedsUpdate, then menuWillOpen. Where it is empty by then, it is closed again and
    // `reserve`, if there is one, is opened in its place. Refused (false) while a menu is open or an alert runs. A menu
    // that stays empty is open too; whoever shows it decides what to do then.
    bool open(std::shared_ptr<NSMenu> menu, std::shared_ptr<NSMenu> reserve = nullptr);

    // Opens the submenu of `item`, a row of the menu at `level`. Deeper levels are closed first. Opening
    // the submenu that is open already changes nothing. Refused (false) where the item has none or is not
    // in that menu.
    bool openSubmenu(std::size_t level, const std::shared_ptr<NSMenuItem>& item);

    // Closes every level past the first `count`, deepest first; 0 closes all.
    void closeToLevelCount(std::size_t count);
    void closeAll() { closeToLevelCount(0); }

    // The person chose `item`. Takes the menus off the screen, closes them, and then sends the item's
    // action; the item is held until the action has ended. False, and nothing happens, where the item has
    // no action.
    bool choose(std::shared_ptr<NSMenuItem> item);

    // Set by whoever shows the menu; called before a choice closes the menus.
    std::function<void()> onTakeOffScreen;

private:
    void tellAboutToOpen(NSMenu& menu);

    std::vector<std::shared_ptr<NSMenu>> levels_;
};

} // namespace quillbox
