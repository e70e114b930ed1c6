#pragma once

#include "NSMenuItem.h"

#include <memory>
#include <string>

namespace quillbox {

class MainMenuItem;

// A menu item that knows the path it opens.
class NSMenuItemPlus : public NSMenuItem {
public:
    using NSMenuItem::NSMenuItem;

    // An item of a long menu: its memory comes from a pool, and a weak reference to it keeps none of it.
    static std::shared_ptr<NSMenuItemPlus> make(std::string title, const Selector* action);

    // The file system's bytes.
    std::string pathToOpen;
    // A directory that is not a package.
    bool isDirectory = false;
    // Stands for a picked path whose bookmark could not be resolved; opening it first checks that the
    // path exists.
    bool isArbitraryPathInaccessible = false;
    // The configured item; set on "Clear Menu".
    std::weak_ptr<MainMenuItem> mainMenuItem;
};

} // namespace quillbox
