#pragma once

#include "MenuOptionFlags.h"
#include "NSMenu.h"

#include <memory>
#include <optional>
#include <string>

namespace quillbox {

class MainMenuItem;

// What a dynamic menu contains, and so how it is filled when it is about to open.
enum class menuDynamicContents : int {
    alreadyValid = 0,
    topLevelMenu = 1,
    directoryContents = 2,
    recentItems = 3,
    recentItemsApps = 4,
    recentItemsDocs = 5,
};

constexpr std::optional<menuDynamicContents> menuDynamicContentsFrom(int rawValue)
{
    return rawValue >= 0 && rawValue <= 5 ? std::optional(static_cast<menuDynamicContents>(rawValue)) : std::nullopt;
}

// A menu that is built anew each time it is about to open. Whoever makes it sets the fields once.
class NSMenuDynamic : public NSMenu {
public:
    menuDynamicContents menuDynamicContentsType = menuDynamicContents::alreadyValid;
    // For directoryContents: the directory to list, as the file system's bytes.
    std::string pathForMenuItems;
    // The options of the top-level item to which this menu belongs.
    MenuOptionFlagsSv optionFlagsSv;
    MenuOptionFlagsDv optionFlagsDv;
    // For recent items: the configured item.
    std::weak_ptr<MainMenuItem> mainMenuItem;
};

} // namespace quillbox
