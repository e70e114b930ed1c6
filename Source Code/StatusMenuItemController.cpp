#include "StatusMenuItemController.h"

#include "Bundle.h"
#include "Debug.h"
#include "GlobalVars.h"
#include "ManageDefaults.h"
#include "MDQuery.h"
#include "MenuGraphics.h"
#include "NameOrder.h"
#include "NSAlert.h"
#include "NSWorkspace.h"
#include "PrefPaneTitles.h"
#include "SlabPool.h"
#include "StringComparison.h"
#include "Unicode.h"

#include <algorithm>
#include <string_view>

namespace quillbox {

namespace selectors {
    using Controller = StatusMenuItemController;
    const Selector doNothing = makeSelector<&Controller::doNothing>("doNothingWithSender:");
    const Selector openAppPreferencesWindow =
        makeSelector<&Controller::openAppPreferencesWindow>("openAppPreferencesWindowWithSender:");
    const Selector openSystemSettings = makeSelector<&Controller::openSystemSettings>("openSystemSettingsWithSender:");
    const Selector openTheClickedFile = makeSelector<&Controller::openTheClickedFile>("openTheClickedFileWithSender:");
    const Selector clearRecentItemsMenu =
        makeSelector<&Controller::clearRecentItemsMenu>("clearRecentItemsMenuWithSender:");
} // namespace selectors

namespace {

    constexpr char kPopulate[] = "populateTheTopLevelMenu()";
    constexpr char kCreateGroups[] =
        "createMenuItemForMainMenu(group1URLs:group2URLs:group1MissingMsg:optionFlagsSv:optionFlagsDv:)";
    constexpr char kCreateRecursive[] = "createRecursiveMenuItem(forPathURL:displayString:isTopLevel:"
                                        "returnNilIfDoesntExist:optionFlagsSv:optionFlagsDv:)";
    constexpr char kCreateSubMenu[] = "createSubMenuItems(directoryURL:returnNilIfNoDir:optionFlagsSv:optionFlagsDv:)";

    // How many elements of a chain of links and aliases are gone through before it is given up.
    constexpr int kLinkStepBudget = 20;

    constexpr double kAlertWidth = 600; // points

    constexpr URLResourceKey kChainKeys = URLResourceKey::isDirectory | URLResourceKey::isPackage
        | URLResourceKey::isAliasFile | URLResourceKey::isSymbolicLink;
    constexpr URLResourceKey kEntryKeys = kChainKeys | URLResourceKey::isHidden | URLResourceKey::hasHiddenExtension;

    using ItemList = StatusMenuItemController::ItemList;

    FileManager& fileManager()
    {
        return FileManager::defaultManager();
    }

    void logError(int line, std::string_view function, std::string_view message)
    {
        Debug::addErrorLogEntry("StatusMenuItemController", function, __FILE__, line, false, message);
    }

    // A line of its own for a path, as the log shows it.
    std::string quotedLine(const std::string& path)
    {
        return "  \"" + unicode::displayText(path) + "\"";
    }

    // A row that only tells something: no action, so it is shown disabled.
    std::shared_ptr<NSMenuItem> textItem(std::string title)
    {
        return std::make_shared<NSMenuItem>(std::move(title));
    }

    // The same for something missing or failed.
    std::shared_ptr<NSMenuItem> missingItem(const std::string& title)
    {
        auto item = textItem(unicode::displayText(title));
        if (missingItemIcon())
            item->setImage(*missingItemIcon());
        return item;
    }

    void setNamedImage(NSMenuItem& item, std::string_view name, bool resized)
    {
        auto image = NSImage::imageNamed(name);
        if (!image)
            return;
        if (resized)
            image->setSize(menuIconSize);
        item.setImage(*image);
    }

    NSImage menuIcon(const std::string& path, DirectoryListing::EntryKind kind)
    {
        NSImage image = NSWorkspace::sharedWorkspace().icon(path, kind);
        image.setSize(menuIconSize);
        return image;
    }

    bool isTrue(const std::optional<bool>& value)
    {
        return value.value_or(false);
    }

    std::vector<URL> urls(SearchPathDirectory directory, SearchPathDomainMask domains)
    {
        return fileManager().urls(directory, domains);
    }

    // Follows aliases and links to what they lead to; none where the chain is broken or too long.
    std::optional<std::pair<std::string, URLResourceValues>> endOfLinks(const std::string& start)
    {
        std::string path = start;
        for (int budget = kLinkStepBudget;;) {
            auto values = URL::fileURLWithPath(path).resourceValues(kChainKeys);
            if (!values || !values->isDirectory)
                return std::nullopt;
            if (isTrue(values->isAliasFile)) {
                const auto target = URL::resolvingAliasFile(URL::fileURLWithPath(path));
                if (!target)
                    return std::nullopt;
                path = target->path();
            } else if (isTrue(values->isSymbolicLink)) {
                const auto target = fileManager().destinationOfSymbolicLink(path);
                if (!target)
                    return std::nullopt;
                // Not tidied up: ".." behind a link to a directory leads elsewhere than its text says.
                path = target->starts_with('/') ? *target
                                                : path::appending(path::deletingLastPathComponent(path), *target);
            } else {
                return std::pair(std::move(path), std::move(*values));
            }
            if (--budget == 0)
                return std::nullopt;
        }
    }

    std::string prefPaneDisplayName(const std::string& baseTitle, const std::string& path)
    {
        if (const auto title = prefPaneTitle(baseTitle))
            return std::string(*title);
        if (const auto bundle = Bundle::atPath(path)) {
            if (const auto name = bundle->infoString("CFBundleName"))
                return *name;
            if (const auto name = bundle->infoString("CFBundleExecutable"))
                return *name;
        }
        return path::deletingPathExtension(baseTitle);
    }

    ItemList sortedItems(ItemList items, MenuOptionFlagsSv optionFlagsSv)
    {
        const bool ignoresArticles = optionFlagsSv.contains(menuOptionFlagsSv::ignoreArticles);
        NameOrder order(items.size());
        for (const auto& item : items)
            order.add(ignoresArticles ? titleWithoutArticle(item->title()) : item->title());
        ItemList sorted;
        sorted.reserve(items.size());
        for (const std::uint32_t position : order.sortedPositions())
            sorted.push_back(std::move(items[position]));
        return sorted;
    }

    void sortByLastComponent(StatusMenuItemController::PathList& paths)
    {
        NameOrder order(paths.size());
        for (const std::string& path : paths)
            order.add(path::lastPathComponent(path));
        StatusMenuItemController::PathList sorted;
        sorted.reserve(paths.size());
        for (const std::uint32_t position : order.sortedPositions())
            sorted.push_back(std::move(paths[position]));
        paths = std::move(sorted);
    }

    // Rows that open the same path under the same title as the row before are shown once. Other rows
    // (separators, messages) are passed over and do not interrupt the comparison.
    void removeAdjacentDuplicates(ItemList& items)
    {
        const NSMenuItemPlus* previous = nullptr;
        std::erase_if(items, [&previous](const std::shared_ptr<NSMenuItem>& item) {
            const auto* current = dynamic_cast<const NSMenuItemPlus*>(item.get());
            if (!current)
                return false;
            const bool isRepeated = previous
                ? current->pathToOpen == previous->pathToOpen && isCanonicallyEqual(current->title(), previous->title())
                : current->pathToOpen.empty() && current->title().empty();
            if (!isRepeated)
                previous = current;
            return isRepeated;
        });
    }

    void append(ItemList& items, ItemList more)
    {
        items.insert(items.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    }

    std::string rawText(const MainMenuItem& item)
    {
        return std::string(rawValue(item.menuItemType));
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
        // Stays only if the menu can't be built at all.
        if (statusItem_->menu())
            statusItem_->menu()->addItem(textItem("Dynamic Init Menu Item"));
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
    statusItem_->menu()->removeAllItems();
    Debug::pruneDynamicMenuItems();
    SlabPool::trimHeapAfterMany();
}

void StatusMenuItemController::fillRecentItemsMenu(NSMenuDynamic& menu)
{
    menu.removeAllItems();
    const std::shared_ptr<MainMenuItem> item = menu.mainMenuItem.lock();
    const auto kind = menu.menuDynamicContentsType;
    const bool hasApps = kind != menuDynamicContents::recentItemsDocs;
    const bool hasDocs = kind != menuDynamicContents::recentItemsApps;
    const bool hasHeadings = kind == menuDynamicContents::recentItems;

    const std::int64_t limit = item ? item->maxNumberOfRecentItems : 0;
    const Date cutOff = item && item->noRecentItemsOlderThan ? *item->noRecentItemsOlderThan : Date::now();
    const MenuOptionFlagsSv flags = item ? item->optionFlagsSv : MenuOptionFlagsSv();
    const auto [apps, docs] = queryRecentItems(cutOff, hasApps ? limit : 0, hasDocs ? limit : 0, flags);

    if (hasHeadings)
        menu.addItem(textItem("Applications"));
    if (hasApps)
        addFileItems(menu, apps, item);
    if (hasHeadings) {
        menu.addItem(NSMenuItem::separatorItem());
        menu.addItem(textItem("Documents"));
    }
    if (hasDocs)
        addFileItems(menu, docs, item);

    menu.addItem(NSMenuItem::separatorItem());
    auto last = std::make_shared<NSMenuItemPlus>();
    if ((hasApps && !apps.empty()) || (hasDocs && !docs.empty())) {
        last->setTitle("Clear Menu");
        last->setAction(&selectors::clearRecentItemsMenu);
        last->setTarget(weak_from_this());
        last->mainMenuItem = item;
    } else {
        last->setAttributedTitle(AttributedString("Note that \"" + menu.title()
                                                  + "\" can only show items\n"
                                                    "that Quillbox can already access, such as items\n"
                                                    "inside directories that Quillbox will browse"));
    }
    menu.addItem(std::move(last));
}

void StatusMenuItemController::addFileItems(NSMenu& menu, const PathList& paths,
                                            const std::shared_ptr<MainMenuItem>& mainMenuItem)
{
    if (paths.empty()) {
        auto none = textItem("None");
        setNamedImage(*none, NSImageNameStatusNone, false);
        menu.addItem(std::move(none));
    }
    for (const std::string& path : paths)
        menu.addItem(createFileMenuItem(path, mainMenuItem));
}

// The top level

void StatusMenuItemController::populateTheTopLevelMenu()
{
    const auto menu = std::dynamic_pointer_cast<NSMenuDynamic>(statusItem_->menu());
    if (!menu) {
        logError(__LINE__, kPopulate, "statusItem.menu == nil, or didn't contain a NSMenuDynamic");
        return;
    }
    ManageDefaults::loadAppMenusFromDisk(true);
    menu->removeAllItems();
    const MainMenuItem::List configured = MainMenuItem::actualMenuItems();
    for (const auto& item : configured)
        menu->addItem(topLevelItem(item));
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::topLevelItem(const std::shared_ptr<MainMenuItem>& item)
{
    const MainMenuItem::Info* info = MainMenuItem::menuItemInfo(item->menuItemType);
    if (!info) {
        logError(__LINE__, kPopulate,
                 "type " + rawText(*item) + ": MainMenuItem.menuItemInfo[] doesn't have info for this type");
        return missingItem(rawText(*item) + "]");
    }
    if (info->forDirectory)
        return groupItem(*item, *info);

    switch (item->menuItemType) {
    case MenuItemType::fixedAppPreferences: {
        auto preferences = std::make_shared<NSMenuItem>(info->displayString, &selectors::openAppPreferencesWindow);
        preferences->setTarget(weak_from_this());
        return preferences;
    }
    case MenuItemType::separator:
        return NSMenuItem::separatorItem();
    case MenuItemType::systemSettings:
        return systemSettingsItem(*item);
    case MenuItemType::systemApplicationsDirectory:
        return applicationsItem(*item);
    case MenuItemType::plaintext:
        return plaintextItem(*item);
    case MenuItemType::arbitraryPath:
        return arbitraryPathItem(*item);
    case MenuItemType::recentItems:
    case MenuItemType::recentItemsApps:
    case MenuItemType::recentItemsDocs:
        return recentItemsItem(item);
    case MenuItemType::userHomeDirectory:
        return homeDirectoryItem(*item);
    default:
        logError(__LINE__, kPopulate, "type ." + rawText(*item) + " wasn't handled by the switch{} statement");
        return missingItem("." + rawText(*item));
    }
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::groupItem(const MainMenuItem& item,
                                                                const MainMenuItem::Info& info)
{
    const std::vector<URL> group = urls(*info.forDirectory, *info.in);
    if (group.empty()) {
        logError(__LINE__, kPopulate,
                 "type " + rawText(item) + ": FileManager.default.urls returned an empty-array for this group");
        return missingItem(rawText(item));
    }
    auto result = createMenuItemForMainMenu(group, {}, group.front().path() + " Not Found", item.optionFlagsSv,
                                            item.optionFlagsDv);
    if (!result) {
        logError(__LINE__, kPopulate, "type " + rawText(item) + ": createMenuItemForMainMenu() didn't work");
        return missingItem(rawText(item));
    }
    result->setTitle(item.displayString);
    return result;
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::systemSettingsItem(const MainMenuItem& item)
{
    auto settings = std::make_shared<NSMenuItem>(item.displayString, &selectors::openSystemSettings);
    settings->setTarget(weak_from_this());

    std::optional<NSImage> icon;
    for (const URL& directory :
         urls(SearchPathDirectory::applicationDirectory, SearchPathDomainMask::systemDomainMask)) {
        const std::string path = directory.path() + "/" + GlobalVars::systemSettingsAppName() + ".app";
        if (fileManager().fileExists(path)) {
            icon = NSWorkspace::sharedWorkspace().icon(path);
            break;
        }
    }
    if (!icon)
        icon = NSImage::imageNamed(NSImageNamePreferencesGeneral);
    if (icon) {
        icon->setSize(menuIconSize);
        settings->setImage(*icon);
    }

    const auto panes = createMenuItemForMainMenu(
        urls(SearchPathDirectory::preferencePanesDirectory, SearchPathDomainMask::localAndSystemDomainMask),
        urls(SearchPathDirectory::preferencePanesDirectory, SearchPathDomainMask::userDomainMask),
        GlobalVars::systemSettingsAppName() + " Not Found", item.optionFlagsSv, item.optionFlagsDv);
    if (panes && panes->hasSubmenu() && panes->submenu()->numberOfItems() > 0) {
        ItemList entries = panes->submenu()->itemArray();
        panes->submenu()->removeAllItems();
        auto submenu = std::make_shared<NSMenu>();
        submenu->setItemArray(std::move(entries));
        settings->setSubmenu(std::move(submenu));
    }
    return settings;
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::applicationsItem(const MainMenuItem& item)
{
    auto result = createMenuItemForMainMenu(
        urls(SearchPathDirectory::applicationDirectory, SearchPathDomainMask::localAndSystemDomainMask),
        urls(SearchPathDirectory::applicationDirectory, SearchPathDomainMask::userDomainMask), "Applications Not Found",
        item.optionFlagsSv, item.optionFlagsDv);
    if (!result) {
        logError(__LINE__, kPopulate, "type " + rawText(item) + ": couldn't create a menu-item for this type");
        return missingItem(".systemApplicationsDirectory");
    }
    result->setTitle(item.displayString);
    return result;
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::homeDirectoryItem(const MainMenuItem& item)
{
    const URL home = fileManager().homeDirectoryForCurrentUser();
    auto result = createMenuItemForMainMenu({ home }, {}, "\"" + home.path() + "\" Not Found", item.optionFlagsSv,
                                            item.optionFlagsDv);
    if (!result) {
        logError(__LINE__, kPopulate, rawText(item) + ": couldn't create a menu-item for this type");
        return missingItem(".userHomeDirectory");
    }
    result->setTitle(item.displayString);
    return result;
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::plaintextItem(const MainMenuItem& item)
{
    auto label = textItem(item.displayString);
    setNamedImage(*label, NSImageNameAdvanced, true);
    if (!item.optionFlagsSv.contains(menuOptionFlagsSv::showPlaintextAsDisabled)) {
        label->setAction(&selectors::doNothing);
        label->setTarget(weak_from_this());
    }
    return label;
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::arbitraryPathItem(const MainMenuItem& item)
{
    if (!item.fileURL) {
        auto missing = std::make_shared<NSMenuItemPlus>(item.displayString, &selectors::openTheClickedFile);
        if (missingItemIcon())
            missing->setImage(*missingItemIcon());
        missing->setTarget(weak_from_this());
        missing->pathToOpen = item.unixPath.value_or("[Filename Missing]");
        if (item.optionFlagsSv.contains(menuOptionFlagsSv::showPathAsTooltip))
            missing->setToolTip(unicode::displayText(missing->pathToOpen));
        missing->isArbitraryPathInaccessible = true;
        return missing;
    }
    if (auto result = createRecursiveMenuItem(*item.fileURL, item.displayString, true, false, item.optionFlagsSv,
                                              item.optionFlagsDv))
        return result;
    logError(__LINE__, kPopulate, "menu-item \"" + item.displayString + "\" didn't create a menu item");
    return missingItem("." + item.fileURL->absoluteString());
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::recentItemsItem(const std::shared_ptr<MainMenuItem>& item)
{
    auto result = textItem(item->displayString);
    setNamedImage(*result, NSImageNameRevealFreestandingTemplate, false);
    auto submenu = std::make_shared<NSMenuDynamic>();
    submenu->setTitle(item->displayString);
    submenu->setDelegate(weak_from_this());
    submenu->optionFlagsSv = item->optionFlagsSv;
    submenu->optionFlagsDv = item->optionFlagsDv;
    submenu->mainMenuItem = item;
    const std::string_view raw = rawValue(item->menuItemType);
    submenu->menuDynamicContentsType = raw == "recentItems" ? menuDynamicContents::recentItems
        : raw == "recentItemsApps"                          ? menuDynamicContents::recentItemsApps
                                                            : menuDynamicContents::recentItemsDocs;
    result->setSubmenu(std::move(submenu));
    return result;
}

// Merged directories

std::shared_ptr<NSMenuItem> StatusMenuItemController::createMenuItemForMainMenu(const std::vector<URL>& group1URLs,
                                                                                const std::vector<URL>& group2URLs,
                                                                                const std::string& group1MissingMsg,
                                                                                MenuOptionFlagsSv optionFlagsSv,
                                                                                MenuOptionFlagsDv optionFlagsDv)
{
    struct Group {
        ItemList items;
        std::size_t contributorCount = 0;
        std::shared_ptr<NSMenuItem> firstDirectory;
        std::shared_ptr<NSMenuItem> firstContributor;
    };
    const auto collect = [&](const std::vector<URL>& directories) {
        Group group;
        for (const URL& directory : directories) {
            auto item = createRecursiveMenuItem(directory, std::nullopt, true, true, optionFlagsSv, optionFlagsDv);
            if (!item)
                continue;
            if (!group.firstDirectory)
                group.firstDirectory = item;
            auto entries = createSubMenuItems(directory, true, optionFlagsSv, optionFlagsDv);
            if (!entries || entries->empty())
                continue;
            append(group.items, std::move(*entries));
            ++group.contributorCount;
            if (!group.firstContributor)
                group.firstContributor = item;
        }
        if (group.contributorCount > 1)
            group.items = sortedItems(std::move(group.items), {});
        return group;
    };

    if (group1URLs.empty())
        return nullptr;
    Group group1 = collect(group1URLs);
    if (group1.items.empty() && !group1MissingMsg.empty()) {
        logError(__LINE__, kCreateGroups, unicode::displayText(group1MissingMsg));
        group1.items.push_back(missingItem(group1MissingMsg));
    }
    Group group2 = collect(group2URLs);

    auto result = group1.firstContributor ? group1.firstContributor : group1.firstDirectory;
    if (!result) {
        const std::string message = unicode::displayText(group1URLs.front().path()) + " not found";
        logError(__LINE__, kCreateGroups, message);
        return missingItem(message);
    }

    ItemList joined = std::move(group1.items);
    if (joined.empty() && group2.items.empty()) {
        for (const auto* group : { &group1URLs, &group2URLs }) {
            for (const URL& directory : *group) {
                const std::string message = unicode::displayText(directory.path()) + " not found";
                logError(__LINE__, kCreateGroups, message);
                joined.push_back(missingItem(message));
            }
        }
    } else {
        if (!joined.empty() && !group2.items.empty())
            joined.push_back(NSMenuItem::separatorItem());
        append(joined, std::move(group2.items));
    }
    removeAdjacentDuplicates(joined);

    auto submenu = std::make_shared<NSMenu>();
    submenu->setItemArray(std::move(joined));
    result->setSubmenu(std::move(submenu));
    return result;
}

// One path, one directory

std::shared_ptr<NSMenuItem> StatusMenuItemController::createRecursiveMenuItem(
    const URL& forPathURL, const std::optional<std::string>& displayString, bool isTopLevel,
    bool returnNilIfDoesntExist, MenuOptionFlagsSv optionFlagsSv, MenuOptionFlagsDv optionFlagsDv)
{
    const std::string& path = forPathURL.path();
    auto values = forPathURL.resourceValues(kEntryKeys);
    if (!values) {
        const bool exists = fileManager().fileExists(path);
        if (!exists && returnNilIfDoesntExist)
            return nullptr;
        logError(__LINE__, kCreateRecursive, "resourceValues() returned nil for path:\n" + quotedLine(path));
        return textItem((exists ? "Permissions Error?: " : "File Not Found?: ") + unicode::displayText(path));
    }
    return createItem({ path, std::move(*values), DirectoryListing::EntryKind::unknown,
                        displayString ? *displayString : unicode::displayText(path::lastPathComponent(path)),
                        displayString.has_value() },
                      isTopLevel, optionFlagsSv, optionFlagsDv);
}

std::shared_ptr<NSMenuItem> StatusMenuItemController::createItem(Entry entry, bool isTopLevel,
                                                                 MenuOptionFlagsSv optionFlagsSv,
                                                                 MenuOptionFlagsDv optionFlagsDv)
{
    if (!isTopLevel && isTrue(entry.values.isHidden) && !optionFlagsSv.contains(menuOptionFlagsSv::showHiddenItems))
        return nullptr;
    NSImage icon = menuIcon(entry.path, entry.kind);
    if (isTrue(entry.values.isAliasFile) || isTrue(entry.values.isSymbolicLink)) {
        if (auto end = endOfLinks(entry.path)) {
            entry.path = std::move(end->first);
            entry.values = std::move(end->second);
        }
    }
    const bool isPackage = isTrue(entry.values.isPackage);
    std::string title = std::move(entry.baseTitle);
    if (!entry.isTitleGiven) {
        if (optionFlagsDv.contains(menuOptionFlagsDv::prefPaneDisplayNames) && isPackage
            && path::pathExtension(entry.path) == "prefPane")
            title = prefPaneDisplayName(title, entry.path);
        else if (isTrue(entry.values.hasHiddenExtension))
            title = path::deletingPathExtension(title);
    }

    auto item = NSMenuItemPlus::make(std::move(title), &selectors::openTheClickedFile);
    item->setImage(std::move(icon));
    item->setTarget(weak_from_this());
    item->pathToOpen = std::move(entry.path);
    item->isDirectory = isTrue(entry.values.isDirectory) && !isPackage;
    if (optionFlagsSv.contains(menuOptionFlagsSv::showPathAsTooltip))
        item->setToolTip(unicode::displayText(item->pathToOpen));
    if (item->isDirectory)
        attachDirectoryMenu(*item, optionFlagsSv, optionFlagsDv);
    Debug::dynamicMenuItems().push_back({ item });
    return item;
}

void StatusMenuItemController::attachDirectoryMenu(NSMenuItemPlus& item, MenuOptionFlagsSv optionFlagsSv,
                                                   MenuOptionFlagsDv optionFlagsDv)
{
    auto submenu = std::make_shared<NSMenuDynamic>();
    submenu->setTitle(item.title());
    submenu->menuDynamicContentsType = menuDynamicContents::directoryContents;
    submenu->setDelegate(weak_from_this());
    submenu->pathForMenuItems = item.pathToOpen;
    submenu->optionFlagsSv = optionFlagsSv;
    submenu->optionFlagsDv = optionFlagsDv;
    item.setSubmenu(std::move(submenu));
}

std::optional<StatusMenuItemController::ItemList>
StatusMenuItemController::createSubMenuItems(const URL& directoryURL, bool returnNilIfNoDir,
                                             MenuOptionFlagsSv optionFlagsSv, MenuOptionFlagsDv optionFlagsDv)
{
    const std::string& path = directoryURL.path();
    const auto listing = fileManager().contentsOfDirectory(directoryURL,
                                                           optionFlagsSv.contains(menuOptionFlagsSv::showHiddenItems)
                                                               ? DirectoryEnumerationOptions::none
                                                               : DirectoryEnumerationOptions::skipsHiddenFiles);
    if (!listing) {
        if (returnNilIfNoDir)
            return std::nullopt;
        bool isDirectory = false;
        if (!fileManager().fileExists(path, isDirectory))
            return ItemList { textItem("Directory Doesn't Exist") };
        if (isDirectory)
            return ItemList { textItem("Insufficient Permissions") };
        logError(__LINE__, kCreateSubMenu,
                 ".fileExists() says it's a valid file (not directory)?\n" + quotedLine(path));
        return ItemList { textItem("This Is a File Not a Dir") };
    }
    if (listing->isEmpty()) {
        if (returnNilIfNoDir)
            return std::nullopt;
        return ItemList { textItem("Empty Directory") };
    }

    ItemList items;
    items.reserve(listing->count());
    for (std::size_t index = 0; index < listing->count(); ++index) {
        std::shared_ptr<NSMenuItem> item;
        // What the listing told already need not be asked again.
        if (auto values = listing->knownResourceValues(index))
            item = createItem({ listing->path(index), std::move(*values), listing->kind(index),
                                unicode::displayText(listing->name(index)), false },
                              false, optionFlagsSv, optionFlagsDv);
        else
            item = createRecursiveMenuItem(URL::fileURLWithPath(listing->path(index)), std::nullopt, false, false,
                                           optionFlagsSv, optionFlagsDv);
        if (item)
            items.push_back(std::move(item));
    }
    if (items.empty()) {
        logError(__LINE__, kCreateSubMenu, "This directory only contains hidden files?\n" + quotedLine(path));
        return ItemList { textItem("This Directory Only Contains Hidden Files?") };
    }
    return sortedItems(std::move(items), optionFlagsSv);
}

std::shared_ptr<NSMenuItemPlus>
StatusMenuItemController::createFileMenuItem(const std::string& forPath,
                                             const std::shared_ptr<MainMenuItem>& mainMenuItem)
{
    std::string title = unicode::displayText(path::lastPathComponent(forPath));
    const auto values = URL::fileURLWithPath(forPath).resourceValues(URLResourceKey::hasHiddenExtension);
    if (values && isTrue(values->hasHiddenExtension))
        title = path::deletingPathExtension(title);
    auto item = std::make_shared<NSMenuItemPlus>(std::move(title), &selectors::openTheClickedFile);
    item->setImage(menuIcon(forPath, DirectoryListing::EntryKind::unknown));
    item->setTarget(weak_from_this());
    item->pathToOpen = forPath;
    if (mainMenuItem && mainMenuItem->optionFlagsSv.contains(menuOptionFlagsSv::showPathAsTooltip))
        item->setToolTip(unicode::displayText(forPath));
    return item;
}

// Recent items

std::pair<StatusMenuItemController::PathList, StatusMenuItemController::PathList>
StatusMenuItemController::queryRecentItems(Date lastUsedSince, std::int64_t maxApps, std::int64_t maxDocs,
                                           MenuOptionFlagsSv optionFlagsSv)
{
    MDQuery query("( InRange (kMDItemLastUsedDate ,          $time.iso(" + lastUsedSince.description()
                      + ") ,          $time.today(+1d)    ))",
                  { kMDItemLastUsedDate });
    static_cast<void>(query.execute());

    PathList apps;
    PathList docs;
    const auto hasRoom = [](const PathList& list, std::int64_t limit) {
        return static_cast<std::int64_t>(list.size()) < limit;
    };
    for (std::size_t index = query.resultCount(); index > 0; --index) {
        const auto path = query.result(index - 1).copyAttribute(kMDItemPath);
        if (!path)
            continue;
        const std::string_view extension = path::pathExtension(*path);
        // It could only be a document, and those are full: thousands of them may lie before the next application.
        if (extension != "app" && !hasRoom(docs, maxDocs))
            continue;
        bool isDirectory = false;
        if (!fileManager().fileExists(*path, isDirectory))
            continue;
        if (isDirectory && !NSWorkspace::sharedWorkspace().isFilePackage(*path))
            continue;
        if (isDirectory && extension == "app") {
            if (hasRoom(apps, maxApps))
                apps.push_back(*path);
        } else if (!isDirectory || extension != "prefPane") {
            if (hasRoom(docs, maxDocs))
                docs.push_back(*path);
        }
        if (!hasRoom(apps, maxApps) && !hasRoom(docs, maxDocs))
            break;
    }
    if (!optionFlagsSv.contains(menuOptionFlagsSv::sortByDate)) {
        sortByLastComponent(apps);
        sortByLastComponent(docs);
    }
    return { std::move(apps), std::move(docs) };
}

// Actions

void StatusMenuItemController::doNothing(NSObject*) { }

void StatusMenuItemController::openSystemSettings(NSObject*)
{
    NSWorkspace::sharedWorkspace().launchApplication("com.apple.systempreferences");
}

void StatusMenuItemController::openTheClickedFile(NSMenuItemPlus* sender)
{
    QB_CHECK(sender);
    if (sender->pathToOpen.empty())
        logError(__LINE__, "openTheClickedFile(sender:)", "This function was executed with an empty sender.pathToOpen");
    if (sender->isArbitraryPathInaccessible && !fileManager().fileExists(sender->pathToOpen)) {
        NSAlert alert;
        if (const auto icon = NSImage::imageNamed("Quillbox Icon"))
            alert.setIcon(*icon);
        alert.setMessageText("The application \"Quillbox\" could not find this file:\n\n"
                             + unicode::displayText(sender->pathToOpen) + "\n");
        alert.setInformativeText(
            "The file existed before.  It may have been deleted, or it might be on an unmounted volume.");
        NSRect frame = alert.windowFrame();
        frame.size.width = kAlertWidth;
        alert.setWindowFrame(frame);
        alert.runModal();
        return;
    }
    NSWorkspace::sharedWorkspace().open(URL::fileURLWithPath(sender->pathToOpen));
}

void StatusMenuItemController::clearRecentItemsMenu(NSMenuItemPlus* sender)
{
    const std::shared_ptr<MainMenuItem> item = sender ? sender->mainMenuItem.lock() : nullptr;
    if (item)
        item->noRecentItemsOlderThan = Date::now();
    ManageDefaults::saveAllToDisk();
}

} // namespace quillbox
