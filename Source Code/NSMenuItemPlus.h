#pragma once

#include "NSMenuItem.h"

#include <memory>
#include <string>

namespace quillbox {

class MainMenuItem;

// A menu item that knows the path that it opens.
class NSMenuItemPlus : public NSMenuItem {
public:
    using NSMenuItem::NSMenuItem;

    // Makes an item for a long menu: its memory comes from a pool, and a weak reference to it keeps none of that
    // memory.
    static std::shared_ptr<NSMenuItemPlus> make(std::string title, const Selector* action);

    const Selector* alternateAction() const override;
    const std::string* representedFile() const override;

    // As the file system's bytes.
    std::string pathToOpen;
    // Whether it is a directory, but no package.
    bool isDirectory = false;
    // Whether it stands for a picked path whose bookmark could not be resolved. Opening it first checks that the path
    // exists.
    bool isArbitraryPathInaccessible = false;
    // The configured item. It is set only for "Clear Menu".
    std::weak_ptr<MainMenuItem> mainMenuItem;
};

} // namespace quillbox
