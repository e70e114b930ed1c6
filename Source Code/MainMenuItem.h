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

// One configured item of the status menu's top level. Items are shared by reference: the live list, the
// working list of the preferences window and the default list may hold the same object; menus and editors
// refer to it weakly. All fields may be changed by whoever edits the item.
class MainMenuItem {
public:
    using List = std::vector<std::shared_ptr<MainMenuItem>>;

    // What every item of a kind has in common.
    struct Info {
        // The title of an item that was given none.
        std::string displayString;
        // Set together: the standard directory whose contents the kind shows.
        std::optional<SearchPathDomainMask> in;
        std::optional<SearchPathDirectory> forDirectory;
        // One line for the table of suggestions; may be empty.
        std::string description;
    };

    explicit MainMenuItem(MenuItemType menuItemType, std::optional<std::string> displayString = {},
                          std::optional<std::string> unixPath = {}, std::optional<URL> fileURL = {},
                          MenuOptionFlagsSv optionFlagsSv = {}, MenuOptionFlagsDv optionFlagsDv = {});

    // The item of a saved record; null, and an entry in the error log, where the record's kind is unknown.
    // A bookmark that can't be resolved leaves the item with its path and its bytes, without a URL.
    static std::shared_ptr<MainMenuItem> fromRecord(const MainMenuItemSaver& record);

    // The row of the kind; null only for a value that is no kind.
    static const Info* menuItemInfo(MenuItemType type);

    // The list that the status menu shows; empty until the first load, replaced as a whole.
    static List& actualMenuItems();

    // Prints the live list for whoever works on the program.
    static void dumpActualMenuItems(std::ostream& out);
    static void dumpActualMenuItems();

    MenuItemType menuItemType;
    std::string displayString;
    // arbitraryPath: the picked path, as the file system's bytes once its bookmark was resolved.
    std::optional<std::string> unixPath;
    // arbitraryPath: what the bookmark resolved to; none while it does not.
    std::optional<URL> fileURL;
    // arbitraryPath: the bookmark as last loaded, saved again when no fresh one can be made.
    std::optional<Data> bookmarkDataRaw;
    // Recent-items kinds: entries last used before this moment are not listed.
    std::optional<Date> noRecentItemsOlderThan;
    // Recent-items kinds: how many entries to list.
    std::int64_t maxNumberOfRecentItems = 0;
    MenuOptionFlagsSv optionFlagsSv;
    MenuOptionFlagsDv optionFlagsDv;
};

} // namespace quillbox
