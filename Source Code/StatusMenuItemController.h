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

// Owns the status item and builds its menu. It is the delegate of every dynamic menu, which it fills when
// the menu is about to open and empties when the top-level menu has closed, and the target of every item's
// action. One lives for the whole process; menus and items refer to it weakly. Problems never stop it:
// they become disabled rows and entries of the error log.
//
// The rows themselves are made beside it, by functions that keep nothing (TopLevelRows, MergedRows, PathRows,
// RecentItems); what they report is logged here.
class StatusMenuItemController : public NSObject,
                                 public NSMenuDelegate,
                                 public std::enable_shared_from_this<StatusMenuItemController> {
public:
    // Puts the icon into the status bar, with an empty menu.
    static std::shared_ptr<StatusMenuItemController> create();

    const std::shared_ptr<NSStatusItem>& statusItem() const { return statusItem_; }

    // Builders. Flags go unchanged into every submenu.

    // Replaces the contents of the status item's menu by what is configured.
    void populateTheTopLevelMenu();
    // One item with the merged contents of two groups of directories as its submenu. Null only where group1URLs
    // is empty.
    std::shared_ptr<NSMenuItem> createMenuItemForMainMenu(const std::vector<URL>& group1URLs,
                                                          const std::vector<URL>& group2URLs,
                                                          const std::string& group1MissingMsg,
                                                          MenuOptionFlagsSv optionFlagsSv,
                                                          MenuOptionFlagsDv optionFlagsDv);
    // A file item for a path of a recent-items menu.
    std::shared_ptr<NSMenuItemPlus> createFileMenuItem(const std::string& forPath,
                                                       const std::shared_ptr<MainMenuItem>& mainMenuItem);
    // The item for one path, a directory with a submenu that is filled when it opens. Null where the entry is
    // to be left out: hidden and not at the top level, or missing with returnNilIfDoesntExist.
    std::shared_ptr<NSMenuItem> createRecursiveMenuItem(const URL& forPathURL,
                                                        const std::optional<std::string>& displayString,
                                                        bool isTopLevel, bool returnNilIfDoesntExist,
                                                        MenuOptionFlagsSv optionFlagsSv,
                                                        MenuOptionFlagsDv optionFlagsDv);
    // One level of a directory as sorted items, at least one (it may say what is wrong); with
    // returnNilIfNoDir none where the directory can't be listed or is empty.
    std::optional<ItemList> createSubMenuItems(const URL& directoryURL, bool returnNilIfNoDir,
                                               MenuOptionFlagsSv optionFlagsSv, MenuOptionFlagsDv optionFlagsDv);

    // Actions.
    void doNothing(NSObject* sender);
    void openAppPreferencesWindow(NSObject* sender);
    void openSystemSettings(NSObject* sender);
    void openTheClickedFile(NSMenuItemPlus* sender);
    void clearRecentItemsMenu(NSMenuItemPlus* sender);

    // The menu delegate.
    void menuNeedsUpdate(NSMenu& menu) override;
    void menuWillOpen(NSMenu& menu) override;
    void menuDidClose(NSMenu& menu) override;

    // Paths of applications and of documents used since the cut-off, each list within its limit.
    std::pair<PathList, PathList> queryRecentItems(Date lastUsedSince, std::int64_t maxApps, std::int64_t maxDocs,
                                                   MenuOptionFlagsSv optionFlagsSv);

private:
    StatusMenuItemController() = default;
    void install();
    RowOwner owner();
    void fillRecentItemsMenu(NSMenuDynamic& menu);

    std::shared_ptr<NSStatusItem> statusItem_;
};

// Calls of menuNeedsUpdate since a menu last opened or closed. Only the first of them builds.
int& menuNeedsUpdateCount();

} // namespace quillbox
