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

std::optional<std::string> NSMenuItemPlus::representedFile() const
{
    std::string path = pathToOpen();
    return action() && path.starts_with('/') ? std::optional(std::move(path)) : std::nullopt;
}

std::string NSMenuItemPlus::pathToOpen() const
{
    if (listing_)
        return listing_->path(index_);
    return own_ ? own_->path : std::string();
}

void NSMenuItemPlus::setPathToOpen(std::string path)
{
    listing_ = nullptr;
    own().path = std::move(path);
}

void NSMenuItemPlus::setEntryToOpen(std::shared_ptr<const DirectoryListing> listing, std::size_t index)
{
    listing_ = std::move(listing);
    index_ = static_cast<std::uint32_t>(index);
}

std::shared_ptr<MainMenuItem> NSMenuItemPlus::mainMenuItem() const
{
    return own_ ? own_->mainMenuItem.lock() : nullptr;
}

void NSMenuItemPlus::setMainMenuItem(std::weak_ptr<MainMenuItem> item)
{
    own().mainMenuItem = std::move(item);
}

NSMenuItemPlus::Own& NSMenuItemPlus::own()
{
    if (!own_)
        own_ = std::make_unique<Own>();
    return *own_;
}

} // namespace quillbox
