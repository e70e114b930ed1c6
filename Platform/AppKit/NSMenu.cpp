#include "NSMenu.h"

namespace quillbox {

NSMenu::~NSMenu()
{
    removeAllItems();
}

void NSMenu::adopt(const std::shared_ptr<NSMenuItem>& item)
{
    QB_CHECK(item && !item->menu_);
    item->menu_ = this;
}

void NSMenu::addItem(std::shared_ptr<NSMenuItem> item)
{
    adopt(item);
    items_.push_back(std::move(item));
}

void NSMenu::removeAllItems()
{
    // The items are released one by one from a separate list, so that the destructor of an item finds no half-emptied
    // menu.
    ItemArray released = std::move(items_);
    items_.clear();
    for (auto& item : released) {
        item->menu_ = nullptr;
        item.reset();
    }
}

void NSMenu::setItemArray(ItemArray items)
{
    ItemArray old = std::move(items_);
    for (const auto& item : old)
        item->menu_ = nullptr;
    items_ = std::move(items);
    for (const auto& item : items_)
        adopt(item);
}

} // namespace quillbox
