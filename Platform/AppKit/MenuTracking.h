#pragma once

#include "NSMenu.h"

#include <functional>
#include <memory>
#include <vector>

namespace quillbox {

// The life of an open menu: which menus are open, in which order their delegates hear of it, and how a choice is
// carried out. Every way of showing a menu (our own popups, a host that draws it, a test) drives one of these and holds
// no rules of its own.
//
// Levels are numbered from 0, the menu at the top. This object keeps open menus alive.
class MenuTracking {
public:
    MenuTracking() = default;
    ~MenuTracking();
    MenuTracking(const MenuTracking&) = delete;
    MenuTracking& operator=(const MenuTracking&) = delete;

    bool isOpen() const { return !levels_.empty(); }
    std::size_t levelCount() const { return levels_.size(); }
    const std::shared_ptr<NSMenu>& menu(std::size_t level) const { return levels_[level]; }

    // Opens a menu at the top: its delegate gets menuNeedsUpdate, then menuWillOpen. If the menu is empty after that,
    // it is closed again and `reserve`, if there is one, is opened in its place. An empty menu without a reserve is
    // open too; whoever shows it decides what to do then. Returns false, and opens nothing, while a menu is open or an
    // alert runs.
    bool open(std::shared_ptr<NSMenu> menu, std::shared_ptr<NSMenu> reserve = nullptr);

    // Opens the submenu of `item`, a row of the menu at `level`, and closes deeper levels first. Nothing changes if
    // that submenu is open already. Returns false, and does nothing, if the item has no submenu or is not in that menu.
    bool openSubmenu(std::size_t level, const std::shared_ptr<NSMenuItem>& item);

    // Opens the menu of what can be done with `item`, a row of the menu at `level`, as the level after it, and closes
    // deeper levels first. Returns false, and opens nothing, if the delegate of the menu at the top has no such menu.
    bool openMenuForItem(std::size_t level, const std::shared_ptr<NSMenuItem>& item);

    // Closes every level past the first `count`, deepest first; 0 closes all.
    void closeToLevelCount(std::size_t count);
    void closeAll() { closeToLevelCount(0); }

    // The user chose `item`. Takes the menus off the screen, closes them, and then sends the item's action; the item is
    // kept alive until the action has ended. Returns false, and does nothing, if the item has no action. With
    // Choice::alternate, which is what Control asks for, the alternate action is sent if the item has one.
    enum class Choice { ordinary, alternate };
    bool choose(std::shared_ptr<NSMenuItem> item, Choice choice = Choice::ordinary);

    // Set by whoever shows the menu. It is called before a choice closes the menus.
    std::function<void()> onTakeOffScreen;

private:
    void tellAboutToOpen(NSMenu& menu);

    std::vector<std::shared_ptr<NSMenu>> levels_;
};

} // namespace quillbox
