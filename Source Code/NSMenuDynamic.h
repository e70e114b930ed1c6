#pragma once

#include "MenuOptionFlags.h"
#include "NSMenu.h"

#include <memory>
#include <optional>
#include <string>

namespace quillbox {

class MainMenuItem;

// What a dynamic menu holds, and so how it is filled when it is about to open.
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

// A menu that is built anew each time it is about to open. Its maker sets the fields once.
class NSMenuDynamic : public NSMenu {
public:
    menuDynamicContents menuDynamicContentsType = menuDynamicContents::alreadyValid;
    // The directory to list, as the file system's bytes (directoryContents).
    std::string pathForMenuItems;
    // Options of the top-level item that this menu descends from.
    MenuOptionFlagsSv optionFlagsSv;
    MenuOptionFlagsDv optionFlagsDv;
    // The configured item (recent-items menus).
    std::weak_ptr<MainMenuItem> mainMenuItem;
};

} // namespace quillbox
