#pragma once

#include "DirectoryListing.h"
#include "NSMenuItem.h"

#include <cstdint>
#include <memory>
#include <string>

namespace quillbox {

class MainMenuItem;

// A menu item that knows the path that it opens. The items of a directory share its listing and know their place in it,
// so that a long menu holds the directory's path once and each name of the file system once.
class NSMenuItemPlus : public NSMenuItem {
public:
    using NSMenuItem::NSMenuItem;

    // Makes an item for a long menu: its memory comes from a pool, and a weak reference to it keeps none of that
    // memory.
    static std::shared_ptr<NSMenuItemPlus> make(std::string title, const Selector* action);

    const Selector* alternateAction() const override;
    std::optional<std::string> representedFile() const override;

    // Returns the path as the file system's bytes; empty if there is none.
    std::string pathToOpen() const;
    void setPathToOpen(std::string path);
    // The item opens the entry with that index of `listing`.
    void setEntryToOpen(std::shared_ptr<const DirectoryListing> listing, std::size_t index);

    // The configured item. It is set only for "Clear Menu".
    std::shared_ptr<MainMenuItem> mainMenuItem() const;
    void setMainMenuItem(std::weak_ptr<MainMenuItem> item);

    // Whether it is a directory, but no package.
    bool isDirectory = false;
    // Whether it stands for a picked path whose bookmark could not be resolved. Opening it first checks that the path
    // exists.
    bool isArbitraryPathInaccessible = false;

private:
    // What entries of a listing don't have.
    struct Own {
        std::string path;
        std::weak_ptr<MainMenuItem> mainMenuItem;
    };
    Own& own();

    std::uint32_t index_ = 0;
    // Null unless the item opens an entry of it.
    std::shared_ptr<const DirectoryListing> listing_;
    std::unique_ptr<Own> own_;
};

} // namespace quillbox
