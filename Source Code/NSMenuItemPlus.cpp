#include "NSMenuItemPlus.h"

#include "MenuSelectors.h"
#include "SlabPool.h"

namespace quillbox {

std::shared_ptr<NSMenuItemPlus> NSMenuItemPlus::make(std::string title, const Selector* action)
{
    using Allocator = SlabAllocator<NSMenuItemPlus>;
    const auto release = [](NSMenuItemPlus* item) {
        item->~NSMenuItemPlus();
        Allocator().deallocate(item, 1);
    };
    // std::allocate_shared would put an item and its reference count into one cell. The list of built items refers to
    // each weakly, which would hold the cell for as long as the menu is open.
    auto* item = new (Allocator().allocate(1)) NSMenuItemPlus(std::move(title), action);
    return { item, release, SlabAllocator<char>() };
}

const Selector* NSMenuItemPlus::alternateAction() const
{
    return representedFile() ? &selectors::showTheClickedFile : nullptr;
}

const std::string* NSMenuItemPlus::representedFile() const
{
    return action() && pathToOpen.starts_with('/') ? &pathToOpen : nullptr;
}

} // namespace quillbox
