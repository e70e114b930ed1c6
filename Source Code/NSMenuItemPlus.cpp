#include "NSMenuItemPlus.h"

#include "SlabPool.h"

namespace quillbox {

std::shared_ptr<NSMenuItemPlus> NSMenuItemPlus::make(std::string title, const Selector* action)
{
    using Allocator = SlabAllocator<NSMenuItemPlus>;
    const auto release = [](NSMenuItemPlus* item) {
        item->~NSMenuItemPlus();
        Allocator().deallocate(item, 1);
    };
    // std::allocate_shared would put an item and its count into one cell, which would stay for as long as the list of
    // built items refers to it weakly, and that is as long as the menu is open.
    auto* item = new (Allocator().allocate(1)) NSMenuItemPlus(std::move(title), action);
    return { item, release, SlabAllocator<char>() };
}

} // namespace quillbox
