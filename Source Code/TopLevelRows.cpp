#include "TopLevelRows.h"

#include "GlobalVars.h"
#include "MenuGraphics.h"
#include "MenuSelectors.h"
#include "MergedRows.h"
#include "NSMenuDynamic.h"
#include "NSWorkspace.h"
#include "PathRows.h"
#include "Unicode.h"

namespace quillbox {

namespace {

    constexpr std::string_view kPopulate = "populateTheTopLevelMenu()";

    using MadeRow = Made<std::shared_ptr<NSMenuItem>>;

    std::vector<URL> urls(SearchPathDirectory directory, SearchPathDomainMask domains)
    {
        return FileManager::defaultManager().urls(directory, domains);
    }

    RowOptions optionsOf(const MainMenuItem& item)
    {
        return { item.optionFlagsSv, item.optionFlagsDv };
    }

    std::string rawText(const MainMenuItem& item)
    {
        return std::string(rawValue(item.menuItemType));
    }

    // Gives the row that was made the item's own title. If there is none, returns a row titled `missingTitle` and
    // reports the problem.
    MadeRow titledOrMissing(MadeRow made, const MainMenuItem& item, std::string message,
                            const std::string& missingTitle)
    {
        if (made.value) {
            made.value->setTitle(item.displayString);
        } else {
            made.value = missingRow(missingTitle);
            made.problems.push_back({ kPopulate, std::move(message) });
        }
        return made;
    }

    MadeRow groupRow(const MainMenuItem& item, const MainMenuItem::Info& info, const RowOwner& owner)
    {
        const std::vector<URL> group = urls(*info.forDirectory, *info.in);
        if (group.empty())
            return { missingRow(rawText(item)),
                     { { kPopulate,
                         "type " + rawText(item)
                             + ": FileManager.default.urls returned an empty-array for this group" } } };
        return titledOrMissing(mergedRow(group, {}, group.front().path() + " Not Found", owner, optionsOf(item)), item,
                               "type " + rawText(item) + ": createMenuItemForMainMenu() didn't work", rawText(item));
    }

    std::optional<NSImage> systemSettingsIcon()
    {
        for (const URL& directory :
             urls(SearchPathDirectory::applicationDirectory, SearchPathDomainMask::systemDomainMask)) {
            const std::string path = directory.path() + "/" + GlobalVars::systemSettingsAppName() + ".app";
            if (FileManager::defaultManager().fileExists(path))
                return NSWorkspace::sharedWorkspace().icon(path);
        }
        return NSImage::imageNamed(NSImageNamePreferencesGeneral);
    }

    MadeRow systemSettingsRow(const MainMenuItem& item, const RowOwner& owner)
    {
        auto row = std::make_shared<NSMenuItem>(item.displayString, &selectors::openSystemSettings);
        row->setTarget(owner.target);
        if (auto icon = systemSettingsIcon()) {
            icon->setSize(menuIconSize);
            row->setImage(*icon);
        }
        auto panes = mergedRow(
            urls(SearchPathDirectory::preferencePanesDirectory, SearchPathDomainMask::localAndSystemDomainMask),
            urls(SearchPathDirectory::preferencePanesDirectory, SearchPathDomainMask::userDomainMask),
            GlobalVars::systemSettingsAppName() + " Not Found", owner, optionsOf(item));
        if (panes.value && panes.value->hasSubmenu() && panes.value->submenu()->numberOfItems() > 0) {
            ItemList entries = panes.value->submenu()->itemArray();
            panes.value->submenu()->removeAllItems();
            auto submenu = std::make_shared<NSMenu>();
            submenu->setItemArray(std::move(entries));
            row->setSubmenu(std::move(submenu));
        }
        return { std::move(row), std::move(panes.problems) };
    }

    MadeRow applicationsRow(const MainMenuItem& item, const RowOwner& owner)
    {
        return titledOrMissing(
            mergedRow(urls(SearchPathDirectory::applicationDirectory, SearchPathDomainMask::localAndSystemDomainMask),
                      urls(SearchPathDirectory::applicationDirectory, SearchPathDomainMask::userDomainMask),
                      "Applications Not Found", owner, optionsOf(item)),
            item, "type " + rawText(item) + ": couldn't create a menu-item for this type",
            ".systemApplicationsDirectory");
    }

    MadeRow homeDirectoryRow(const MainMenuItem& item, const RowOwner& owner)
    {
        const URL home = FileManager::defaultManager().homeDirectoryForCurrentUser();
        return titledOrMissing(mergedRow({ home }, {}, "\"" + home.path() + "\" Not Found", owner, optionsOf(item)),
                               item, rawText(item) + ": couldn't create a menu-item for this type",
                               ".userHomeDirectory");
    }

    MadeRow plaintextRow(const MainMenuItem& item, const RowOwner& owner)
    {
        auto row = textRow(item.displayString);
        if (auto image = NSImage::imageNamed(NSImageNameAdvanced)) {
            image->setSize(menuIconSize);
            row->setImage(*image);
        }
        if (!item.optionFlagsSv.contains(menuOptionFlagsSv::showPlaintextAsDisabled)) {
            row->setAction(&selectors::doNothing);
            row->setTarget(owner.target);
        }
        return { std::move(row), {} };
    }

    // Makes the row of a picked path whose bookmark can't be resolved. Choosing the row explains that.
    std::shared_ptr<NSMenuItem> unreachedPathRow(const MainMenuItem& item, const RowOwner& owner)
    {
        auto row = std::make_shared<NSMenuItemPlus>(item.displayString, &selectors::openTheClickedFile);
        if (missingItemIcon())
            row->setImage(*missingItemIcon());
        row->setTarget(owner.target);
        row->setPathToOpen(item.unixPath.value_or("[Filename Missing]"));
        if (item.optionFlagsSv.contains(menuOptionFlagsSv::showPathAsTooltip))
            row->setToolTip(unicode::displayText(row->pathToOpen()));
        row->isArbitraryPathInaccessible = true;
        return row;
    }

    MadeRow arbitraryPathRow(const MainMenuItem& item, const RowOwner& owner)
    {
        if (!item.fileURL)
            return { unreachedPathRow(item, owner), {} };
        auto made =
            pathRow(*item.fileURL, item.displayString, RowPlace::topLevel, IfMissing::saySo, owner, optionsOf(item));
        if (!made.value) {
            made.value = missingRow("." + item.fileURL->absoluteString());
            made.problems.push_back(
                { kPopulate, "menu-item \"" + item.displayString + "\" didn't create a menu item" });
        }
        return made;
    }

    menuDynamicContents recentItemsContents(MenuItemType type)
    {
        switch (type) {
        case MenuItemType::recentItems:
            return menuDynamicContents::recentItems;
        case MenuItemType::recentItemsApps:
            return menuDynamicContents::recentItemsApps;
        default:
            return menuDynamicContents::recentItemsDocs;
        }
    }

    MadeRow recentItemsRow(const std::shared_ptr<MainMenuItem>& item, const RowOwner& owner)
    {
        auto row = textRow(item->displayString);
        setNamedImage(*row, NSImageNameRevealFreestandingTemplate);
        auto submenu = std::make_shared<NSMenuDynamic>();
        submenu->setTitle(item->displayString);
        submenu->setDelegate(owner.menuDelegate);
        submenu->optionFlagsSv = item->optionFlagsSv;
        submenu->optionFlagsDv = item->optionFlagsDv;
        submenu->mainMenuItem = item;
        submenu->menuDynamicContentsType = recentItemsContents(item->menuItemType);
        row->setSubmenu(std::move(submenu));
        return { std::move(row), {} };
    }

} // namespace

MadeRow topLevelRow(const std::shared_ptr<MainMenuItem>& item, const RowOwner& owner)
{
    const MainMenuItem::Info* info = MainMenuItem::menuItemInfo(item->menuItemType);
    if (!info)
        return { missingRow(rawText(*item) + "]"),
                 { { kPopulate,
                     "type " + rawText(*item) + ": MainMenuItem.menuItemInfo[] doesn't have info for this type" } } };
    if (info->forDirectory)
        return groupRow(*item, *info, owner);

    switch (item->menuItemType) {
    case MenuItemType::fixedAppPreferences: {
        auto row = std::make_shared<NSMenuItem>(info->displayString, &selectors::openAppPreferencesWindow);
        row->setTarget(owner.target);
        return { std::move(row), {} };
    }
    case MenuItemType::separator:
        return { NSMenuItem::separatorItem(), {} };
    case MenuItemType::systemSettings:
        return systemSettingsRow(*item, owner);
    case MenuItemType::systemApplicationsDirectory:
        return applicationsRow(*item, owner);
    case MenuItemType::plaintext:
        return plaintextRow(*item, owner);
    case MenuItemType::arbitraryPath:
        return arbitraryPathRow(*item, owner);
    case MenuItemType::recentItems:
    case MenuItemType::recentItemsApps:
    case MenuItemType::recentItemsDocs:
        return recentItemsRow(item, owner);
    case MenuItemType::userHomeDirectory:
        return homeDirectoryRow(*item, owner);
    default:
        return { missingRow("." + rawText(*item)),
                 { { kPopulate, "type ." + rawText(*item) + " wasn't handled by the switch{} statement" } } };
    }
}

} // namespace quillbox
