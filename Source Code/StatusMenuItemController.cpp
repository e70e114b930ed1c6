#include "StatusMenuItemController.h"

#include "Debug.h"
#include "FileManager.h"
#include "ManageDefaults.h"
#include "MenuSelectors.h"
#include "MergedRows.h"
#include "NSAlert.h"
#include "NSApplication.h"
#include "NSWorkspace.h"
#include "PathRows.h"
#include "PreferencesWindowVC.h"
#include "RowMenu.h"
#include "SlabPool.h"
#include "TopLevelRows.h"
#include "Unicode.h"

namespace quillbox {

namespace selectors {
    const Selector doNothing = makeSelector<&StatusMenuItemController::doNothing>("doNothingWithSender:");
    const Selector openAppPreferencesWindow =
        makeSelector<&StatusMenuItemController::openAppPreferencesWindow>("openAppPreferencesWindowWithSender:");
    const Selector openSystemSettings =
        makeSelector<&StatusMenuItemController::openSystemSettings>("openSystemSettingsWithSender:");
    const Selector openTheClickedFile =
        makeSelector<&StatusMenuItemController::openTheClickedFile>("openTheClickedFileWithSender:");
    const Selector showTheClickedFile =
        makeSelector<&StatusMenuItemController::showTheClickedFile>("showTheClickedFileWithSender:");
    const Selector clearRecentItemsMenu =
        makeSelector<&StatusMenuItemController::clearRecentItemsMenu>("clearRecentItemsMenuWithSender:");
} // namespace selectors

namespace {

    constexpr double kAlertWidth = 600; // in points

    // Tells the user, and returns true, if the row's picked file could not be reached and is still missing.
    bool isMissing(const NSMenuItemPlus& row)
    {
        if (!row.isArbitraryPathInaccessible || FileManager::defaultManager().fileExists(row.pathToOpen()))
            return false;
        NSAlert alert;
        alert.setMessageText("The application \"Quillbox\" could not find this file:\n\n"
                             + unicode::displayText(row.pathToOpen()) + "\n");
        alert.setInformativeText(
            "The file existed before.  It may have been deleted, or it might be on an unmounted volume.");
        NSRect frame = alert.windowFrame();
        frame.size.width = kAlertWidth;
        alert.setWindowFrame(frame);
        alert.runModal();
        return true;
    }

    void logError(int line, std::string_view function, std::string_view message)
    {
        Debug::addErrorLogEntry("StatusMenuItemController", function, __FILE__, line, false, message);
    }

    template <class T>
    T logged(Made<T> made)
    {
        for (const RowProblem& problem : made.problems)
            logError(__LINE__, problem.operation, problem.message);
        return std::move(made.value);
    }

    RowPlace place(bool isTopLevel)
    {
        return isTopLevel ? RowPlace::topLevel : RowPlace::inDirectory;
    }

    IfMissing ifMissing(bool returnNil)
    {
        return returnNil ? IfMissing::leaveOut : IfMissing::saySo;
    }

} // namespace

int& menuNeedsUpdateCount()
{
    static int count = 0;
    return count;
}

// Start

std::shared_ptr<StatusMenuItemController> StatusMenuItemController::create()
{
    std::shared_ptr<StatusMenuItemController> controller(new StatusMenuItemController);
    controller->install();
    return controller;
}

void StatusMenuItemController::install()
{
    statusItem_ = NSStatusBar::systemStatusBar().statusItem(NSStatusItem::variableLength);
    if (NSStatusBarButton* button = statusItem_->button()) {
        button->image = NSImage::imageNamed("Quillbox Icon");
        if (button->image)
            button->image->setTemplate(true);
    }
    auto menu = std::make_shared<NSMenuDynamic>();
    menu->setTitle("Top-level Menu");
    menu->setDelegate(weak_from_this());
    menu->menuDynamicContentsType = menuDynamicContents::topLevelMenu;
    statusItem_->setMenu(std::move(menu));
}

// The menu delegate

void StatusMenuItemController::menuNeedsUpdate(NSMenu& menu)
{
    if (++menuNeedsUpdateCount() > 1)
        return;
    auto* dynamicMenu = dynamic_cast<NSMenuDynamic*>(&menu);
    if (!dynamicMenu)
        return;
    switch (dynamicMenu->menuDynamicContentsType) {
    case menuDynamicContents::alreadyValid:
        return;
    case menuDynamicContents::topLevelMenu:
        // This row remains only if the menu can't be built at all.
        if (statusItem_->menu())
            statusItem_->menu()->addItem(textRow("Dynamic Init Menu Item"));
        populateTheTopLevelMenu();
        return;
    case menuDynamicContents::directoryContents:
        if (dynamicMenu->pathForMenuItems.empty())
            return;
        dynamicMenu->setItemArray(createSubMenuItems(URL::fileURLWithPath(dynamicMenu->pathForMenuItems), false,
                                                     dynamicMenu->optionFlagsSv, dynamicMenu->optionFlagsDv)
                                      .value_or(ItemList {}));
        return;
    case menuDynamicContents::recentItems:
    case menuDynamicContents::recentItemsApps:
    case menuDynamicContents::recentItemsDocs:
        fillRecentItemsMenu(*dynamicMenu);
        return;
    }
}

void StatusMenuItemController::menuWillOpen(NSMenu&)
{
    menuNeedsUpdateCount() = 0;
}

void StatusMenuItemController::menuDidClose(NSMenu& menu)
{
    menuNeedsUpdateCount() = 0;
    if (menu.supermenu())
        return;
    rowMenu_.reset();
    statusItem_->menu()->removeAllItems();
    Debug::pruneDynamicMenuItems();
    SlabPool::trimHeapAfterMany();
}

std::shared_ptr<NSMenu> StatusMenuItemController::menuForItem(const std::shared_ptr<NSMenuItem>& item)
{
    if (!item->representedFile())
        return nullptr;
    rowMenu_ = std::make_shared<RowMenu>(item);
    return RowMenu::menu(rowMenu_);
}

RowOwner StatusMenuItemController::owner()
{
    return { weak_from_this(), weak_from_this() };
}

void StatusMenuItemController::fillRecentItemsMenu(NSMenuDynamic& menu)
{
    menu.removeAllItems();
    const std::shared_ptr<MainMenuItem> item = menu.mainMenuItem.lock();
    const auto kind = menu.menuDynamicContentsType;
    const std::int64_t limit = item ? item->maxNumberOfRecentItems : 0;
    const Date cutOff = item && item->noRecentItemsOlderThan ? *item->noRecentItemsOlderThan : Date::now();
    const auto [apps, docs] = queryRecentItems(cutOff, kind == menuDynamicContents::recentItemsDocs ? 0 : limit,
                                               kind == menuDynamicContents::recentItemsApps ? 0 : limit,
                                               item ? item->optionFlagsSv : MenuOptionFlagsSv());
    menu.setItemArray(recentItemsRows(menu, apps, docs, item, owner()));
}

// Builders

void StatusMenuItemController::populateTheTopLevelMenu()
{
    const auto menu = std::dynamic_pointer_cast<NSMenuDynamic>(statusItem_->menu());
    if (!menu) {
        logError(__LINE__, "populateTheTopLevelMenu()", "statusItem.menu == nil, or didn't contain a NSMenuDynamic");
        return;
    }
    ManageDefaults::loadAppMenusFromDisk(true);
    menu->removeAllItems();
    const MainMenuItem::List configured = MainMenuItem::actualMenuItems();
    for (const auto& item : configured)
        menu->addItem(logged(topLevelRow(item, owner())));
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::createMenuItemForMainMenu(const std::vector<URL>& group1URLs,
                                                                                const std::vector<URL>& group2URLs,
                                                                                const std::string& group1MissingMsg,
                                                                                MenuOptionFlagsSv optionFlagsSv,
                                                                                MenuOptionFlagsDv optionFlagsDv)
{
    return logged(mergedRow(group1URLs, group2URLs, group1MissingMsg, owner(), { optionFlagsSv, optionFlagsDv }));
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::createRecursiveMenuItem(
    const URL& forPathURL, const std::optional<std::string>& displayString, bool isTopLevel,
    bool returnNilIfDoesntExist, MenuOptionFlagsSv optionFlagsSv, MenuOptionFlagsDv optionFlagsDv)
{
    return logged(pathRow(forPathURL, displayString, place(isTopLevel), ifMissing(returnNilIfDoesntExist), owner(),
                          { optionFlagsSv, optionFlagsDv }));
}

std::optional<ItemList> StatusMenuItemController::createSubMenuItems(const URL& directoryURL, bool returnNilIfNoDir,
                                                                     MenuOptionFlagsSv optionFlagsSv,
                                                                     MenuOptionFlagsDv optionFlagsDv)
{
    return logged(directoryRows(directoryURL, ifMissing(returnNilIfNoDir), owner(), { optionFlagsSv, optionFlagsDv }));
}

std::shared_ptr<NSMenuItemPlus>
StatusMenuItemController::createFileMenuItem(const std::string& forPath,
                                             const std::shared_ptr<MainMenuItem>& mainMenuItem)
{
    return fileRow(forPath, owner(), { mainMenuItem ? mainMenuItem->optionFlagsSv : MenuOptionFlagsSv(), {} });
}

std::pair<PathList, PathList> StatusMenuItemController::queryRecentItems(Date lastUsedSince, std::int64_t maxApps,
                                                                         std::int64_t maxDocs,
                                                                         MenuOptionFlagsSv optionFlagsSv)
{
    return recentlyUsedPaths(lastUsedSince, maxApps, maxDocs, optionFlagsSv);
}

// Actions

void StatusMenuItemController::doNothing(NSObject*) { }

void StatusMenuItemController::openAppPreferencesWindow(NSObject*)
{
    // A closed window exists until the event that closed it has ended, which may take as long as a drag.
    const auto known = PreferencesWindowVC::preferencesWindow().lock();
    if (!known || !known->isVisible()) {
        ManageDefaults::loadChangesOfOthers(); // The window would put the old list in their place.
        PreferencesWindowVC::create();
    }
    NSApplication::shared().activate(true);
    if (const auto window = PreferencesWindowVC::preferencesWindow().lock())
        window->orderFrontRegardless();
}

void StatusMenuItemController::openSystemSettings(NSObject*)
{
    NSWorkspace::sharedWorkspace().launchApplication("com.apple.systempreferences");
}

void StatusMenuItemController::openTheClickedFile(NSMenuItemPlus* sender)
{
    QB_CHECK(sender);
    if (sender->pathToOpen().empty())
        logError(__LINE__, "openTheClickedFile(sender:)", "This function was executed with an empty sender.pathToOpen");
    if (!isMissing(*sender))
        NSWorkspace::sharedWorkspace().open(URL::fileURLWithPath(sender->pathToOpen()));
}

void StatusMenuItemController::showTheClickedFile(NSMenuItemPlus* sender)
{
    QB_CHECK(sender);
    if (!isMissing(*sender))
        NSWorkspace::sharedWorkspace().activateFileViewer(URL::fileURLWithPath(sender->pathToOpen()));
}

void StatusMenuItemController::clearRecentItemsMenu(NSMenuItemPlus* sender)
{
    const std::shared_ptr<MainMenuItem> item = sender ? sender->mainMenuItem() : nullptr;
    if (item)
        item->noRecentItemsOlderThan = Date::now();
    ManageDefaults::saveAllToDisk();
}

} // namespace quillbox
