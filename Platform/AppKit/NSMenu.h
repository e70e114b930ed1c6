#pragma once

#include "NSMenuItem.h"

#include <memory>
#include <string>
#include <vector>

namespace quillbox {

// Hears when a menu is about to be shown and when it has been closed. MenuTracking calls it.
class NSMenuDelegate {
public:
    virtual ~NSMenuDelegate() = default;
    virtual void menuNeedsUpdate(NSMenu& menu) = 0;
    virtual void menuWillOpen(NSMenu& menu) = 0;
    virtual void menuDidClose(NSMenu& menu) = 0;
    // Returns a menu of what can be done with `item`, or null if there is none. The delegate of the menu at the top is
    // asked for the rows of all levels.
    virtual std::shared_ptr<NSMenu> menuForItem(const std::shared_ptr<NSMenuItem>& /*item*/) { return nullptr; }
};

// A list of items, shown when a status item or an item's submenu is opened. It owns its items.
class NSMenu : public NSObject {
public:
    using ItemArray = std::vector<std::shared_ptr<NSMenuItem>>;

    NSMenu() = default;
    explicit NSMenu(std::string title) : title_(std::move(title)) { }
    ~NSMenu() override;

    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }

    std::shared_ptr<NSMenuDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(std::weak_ptr<NSMenuDelegate> delegate) { delegate_ = std::move(delegate); }

    const ItemArray& itemArray() const { return items_; }
    std::size_t numberOfItems() const { return items_.size(); }
    // `item` must not be in any menu.
    void addItem(std::shared_ptr<NSMenuItem> item);
    void removeAllItems();
    // Replaces the whole list. Each item must be in no menu, or in this one.
    void setItemArray(ItemArray items);

    // Returns the menu that holds the item whose submenu this is; null for a menu at the top.
    NSMenu* supermenu() const { return superItem_ ? superItem_->menu() : nullptr; }

private:
    friend class NSMenuItem;

    void adopt(const std::shared_ptr<NSMenuItem>& item);

    std::string title_;
    std::weak_ptr<NSMenuDelegate> delegate_;
    ItemArray items_;
    // The item whose submenu this is, which owns this menu and sets and clears the pointer.
    NSMenuItem* superItem_ = nullptr;
};

} // namespace quillbox
