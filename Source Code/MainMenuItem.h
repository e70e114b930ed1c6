#pragma once

#include "Data.h"
#include "Date.h"
#include "FileManager.h"
#include "MenuItemType.h"
#include "MenuOptionFlags.h"
#include "URL.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillbox {

struct MainMenuItemSaver;

// One configured item of the status menu's top level. Items are shared: the live list, the working list of the
// preferences window and the default list may hold the same object; menus and editors refer to it weakly. Whoever edits
// the item may change all fields.
class MainMenuItem {
public:
    using List = std::vector<std::shared_ptr<MainMenuItem>>;

    // What all items of one kind have in common.
    struct Info {
        // The title of an item that has been given none.
        std::string displayString;
        // The standard directory whose contents the kind shows. Either both are set or none.
        std::optional<SearchPathDomainMask> in;
        std::optional<SearchPathDirectory> forDirectory;
        // One line for the table of suggestions. It may be empty.
        std::string description;
    };

    explicit MainMenuItem(MenuItemType menuItemType, std::optional<std::string> displayString = {},
                          std::optional<std::string> unixPath = {}, std::optional<URL> fileURL = {},
                          MenuOptionFlagsSv optionFlagsSv = {}, MenuOptionFlagsDv optionFlagsDv = {});

    // Makes the item of a saved record. If the record's kind is unknown, returns null and adds an entry to the error
    // log. If the bookmark can't be resolved, the item has its path and the bookmark's bytes, but no URL.
    static std::shared_ptr<MainMenuItem> fromRecord(const MainMenuItemSaver& record);

    // Returns what all items of the kind have in common; null only for a value that is no kind.
    static const Info* menuItemInfo(MenuItemType type);

    // The list that the status menu shows. It is empty until the first load, and replaced as a whole.
    static List& actualMenuItems();

    // Prints the live list for developers.
    static void dumpActualMenuItems(std::ostream& out);
    static void dumpActualMenuItems();

    MenuItemType menuItemType;
    std::string displayString;
    // For arbitraryPath: the picked path; once its bookmark was resolved, the file system's exact bytes.
    std::optional<std::string> unixPath;
    // For arbitraryPath: the URL to which the bookmark resolved; none while it can't be resolved.
    std::optional<URL> fileURL;
    // For arbitraryPath: the bookmark as last loaded. It is saved again if no new one can be made.
    std::optional<Data> bookmarkDataRaw;
    // For recent items: entries last used before this moment are not listed.
    std::optional<Date> noRecentItemsOlderThan;
    // For recent items: how many entries are listed.
    std::int64_t maxNumberOfRecentItems = 0;
    MenuOptionFlagsSv optionFlagsSv;
    MenuOptionFlagsDv optionFlagsDv;
};

} // namespace quillbox
