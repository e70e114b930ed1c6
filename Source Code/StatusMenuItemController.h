#pragma once

#include "Date.h"
#include "MainMenuItem.h"
#include "MenuRows.h"
#include "NSMenuDynamic.h"
#include "NSMenuItemPlus.h"
#include "NSStatusItem.h"
#include "RecentItems.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillbox {

class RowMenu;

// Owns the status item and builds its menu. It is the delegate of every dynamic menu, which it fills when the menu is
// about to open and empties when the top-level menu has closed, and the target of every item's action. One exists for
// the life of the process; menus and items refer to it weakly. Problems never stop it: they become disabled rows and
// entries of the error log.
//
// Functions without state make the rows themselves (TopLevelRows, MergedRows, PathRows, RecentItems); the controller
// logs the problems that they report.
class StatusMenuItemController : public NSObject,
                                 public NSMenuDelegate,
                                 public std::enable_shared_from_this<StatusMenuItemController> {
public:
    // Makes the controller, and puts the icon with an empty menu into the status bar.
    static std::shared_ptr<StatusMenuItemController> create();

    const std::shared_ptr<NSStatusItem>& statusItem() const { return statusItem_; }

    // Builders. Flags are passed unchanged to every submenu.

    // Replaces the contents of the status item's menu by the configured items.
    void populateTheTopLevelMenu();
    // Makes one item whose submenu has the merged contents of two groups of directories; see mergedRow(). Returns null
    // only if group1URLs is empty.
    std::shared_ptr<NSMenuItem> createMenuItemForMainMenu(const std::vector<URL>& group1URLs,
                                                          const std::vector<URL>& group2URLs,
                                                          const std::string& group1MissingMsg,
                                                          MenuOptionFlagsSv optionFlagsSv,
                                                          MenuOptionFlagsDv optionFlagsDv);
    // Makes the item for a file of a recent-items menu.
    std::shared_ptr<NSMenuItemPlus> createFileMenuItem(const std::string& forPath,
                                                       const std::shared_ptr<MainMenuItem>& mainMenuItem);
    // Makes the item for one path; a directory gets a submenu that is filled when it opens. Returns null if the entry
    // is to be left out: because it is hidden and not at the top level, or missing with returnNilIfDoesntExist.
    std::shared_ptr<NSMenuItem> createRecursiveMenuItem(const URL& forPathURL,
                                                        const std::optional<std::string>& displayString,
                                                        bool isTopLevel, bool returnNilIfDoesntExist,
                                                        MenuOptionFlagsSv optionFlagsSv,
                                                        MenuOptionFlagsDv optionFlagsDv);
    // Makes the sorted items for one level of a directory, at least one, which may say what is wrong. With
    // returnNilIfNoDir, returns nothing if the directory can't be listed or is empty.
    std::optional<ItemList> createSubMenuItems(const URL& directoryURL, bool returnNilIfNoDir,
                                               MenuOptionFlagsSv optionFlagsSv, MenuOptionFlagsDv optionFlagsDv);

    // Actions.
    void doNothing(NSObject* sender);
    void openAppPreferencesWindow(NSObject* sender);
    void openSystemSettings(NSObject* sender);
    void openTheClickedFile(NSMenuItemPlus* sender);
    // Shows the file in the file manager.
    void showTheClickedFile(NSMenuItemPlus* sender);
    void clearRecentItemsMenu(NSMenuItemPlus* sender);

    // The menu delegate.
    void menuNeedsUpdate(NSMenu& menu) override;
    void menuWillOpen(NSMenu& menu) override;
    void menuDidClose(NSMenu& menu) override;
    std::shared_ptr<NSMenu> menuForItem(const std::shared_ptr<NSMenuItem>& item) override;

    // Returns the paths of the applications and of the documents used since the given moment, each list within its
    // limit.
    std::pair<PathList, PathList> queryRecentItems(Date lastUsedSince, std::int64_t maxApps, std::int64_t maxDocs,
                                                   MenuOptionFlagsSv optionFlagsSv);

private:
    StatusMenuItemController() = default;
    void install();
    RowOwner owner();
    void fillRecentItemsMenu(NSMenuDynamic& menu);

    std::shared_ptr<NSStatusItem> statusItem_;
    // Serves the menu of what can be done with a row that was opened last; null when the menu is closed.
    std::shared_ptr<RowMenu> rowMenu_;
};

// The number of calls of menuNeedsUpdate since a menu last opened or closed. Only the first one builds a menu.
int& menuNeedsUpdateCount();

} // namespace quillbox
