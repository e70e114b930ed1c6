#include "MainMenuItem.h"

#include "Debug.h"
#include "GlobalVars.h"
#include "MainMenuItemSaver.h"

#include <array>
#include <cstdio>
#include <iostream>

namespace quillbox {

namespace {

    constexpr double kOneYear = 31'536'000; // in seconds
    constexpr std::int64_t kDefaultRecentItems = 10;

    std::array<MainMenuItem::Info, kMenuItemTypeCount> makeMenuItemInfo()
    {
        using Domain = SearchPathDomainMask;
        using Directory = SearchPathDirectory;
        return { {
            { "Quillbox Preferences...", {}, {}, "Opens the Quillbox preferences window" },
            { GlobalVars::separatorDisplayString(), {}, {}, "" },
            { GlobalVars::systemSettingsAppName(), {}, {}, "System and User Preference-Panes" },
            { "Applications", {}, {}, "System and User Applications directory(s)" },
            { "Plain Text", {}, {}, "A text-string or label that doesn't do anything if clicked" },
            { "[Any File/Directory]", {}, {}, "Choose any arbitrary file or diretory" },
            { "Recent Items", {}, {}, "A list of recently-used items" },
            { "Recent Applications", {}, {}, "A list of recently-used applications" },
            { "Recent Documents", {}, {}, "A list of recently-used documents" },
            { "Home Directory (SandBox)", {}, {}, "This app's sandbox home directory" },
            { "Desktop (SandBox)", Domain::userDomainMask, Directory::desktopDirectory,
              "This app's sandbox desktop directory" },
            { "Documents (SandBox)", Domain::userDomainMask, Directory::documentDirectory,
              "This app's sandbox documents directory" },
            { "Downloads (SandBox)", Domain::userDomainMask, Directory::downloadsDirectory,
              "This app's sandbox downloads directory" },
            { "Other", Domain::systemDomainMask, Directory::printerDescriptionDirectory, "" },
        } };
    }

    void logError(int line, const std::string& message)
    {
        Debug::addErrorLogEntry("MainMenuItem", "init(_:)", __FILE__, line, false, message);
    }

    // An unresolved bookmark is reported only if its file is still there.
    void resolveBookmark(MainMenuItem& item, const MainMenuItemSaver& record)
    {
        bool isStale = false;
        const Result<URL> url = URL::resolvingBookmarkData(record.bookmarkData, isStale);
        if (url) {
            item.fileURL = *url;
            item.unixPath = url->path();
        } else if (FileManager::defaultManager().fileExists(record.unixPath)) {
            logError(__LINE__,
                     "menu-item \"" + record.displayString
                         + "\" couldn't convert a MainMenuItemSaver into a MainMenuItem, because\n"
                         + url.error().description());
        }
    }

    std::string optionalText(const std::optional<std::string>& text, const char* quote)
    {
        return text ? std::string("Optional(") + quote + *text + quote + ")" : "nil";
    }

    std::string hexadecimal(std::uint64_t value)
    {
        std::array<char, 32> text {};
        std::snprintf(text.data(), text.size(), "0x%08llX", static_cast<unsigned long long>(value));
        return text.data();
    }

} // namespace

MainMenuItem::MainMenuItem(MenuItemType type, std::optional<std::string> title, std::optional<std::string> path,
                           std::optional<URL> url, MenuOptionFlagsSv flagsSv, MenuOptionFlagsDv flagsDv)
    : menuItemType(type),
      unixPath(std::move(path)),
      fileURL(std::move(url)),
      optionFlagsSv(flagsSv),
      optionFlagsDv(flagsDv)
{
    if (title)
        displayString = std::move(*title);
    else if (const Info* info = menuItemInfo(type))
        displayString = info->displayString;

    if (isRecentItemsKind(type)) {
        noRecentItemsOlderThan = Date::now().addingSeconds(-kOneYear);
        maxNumberOfRecentItems = kDefaultRecentItems;
    } else if (type == MenuItemType::systemSettings) {
        optionFlagsDv.insert(menuOptionFlagsDv::prefPaneDisplayNames);
    }
}

std::shared_ptr<MainMenuItem> MainMenuItem::fromRecord(const MainMenuItemSaver& record)
{
    // Older programs used another name for this kind.
    const auto type = record.menuItemType == "systemPreferences" ? MenuItemType::systemSettings
                                                                 : quillbox::menuItemType(record.menuItemType);
    if (!type) {
        logError(__LINE__, "the input operand had an unknown menuItemType: \"" + record.menuItemType + "\"");
        return nullptr;
    }

    auto item = std::make_shared<MainMenuItem>(*type, record.displayString);
    item->optionFlagsSv = MenuOptionFlagsSv(record.optionFlags);
    switch (*type) {
    case MenuItemType::fixedAppPreferences:
    case MenuItemType::separator:
        if (const Info* info = menuItemInfo(*type))
            item->displayString = info->displayString;
        else
            logError(__LINE__,
                     "menu-item \"" + std::string(rawValue(*type))
                         + "\" couldn't find its displayString in .menuItemInfo[]");
        break;
    case MenuItemType::arbitraryPath:
        item->unixPath = record.unixPath;
        item->bookmarkDataRaw = record.bookmarkData;
        if (!record.bookmarkData.empty())
            resolveBookmark(*item, record);
        break;
    case MenuItemType::recentItems:
    case MenuItemType::recentItemsApps:
    case MenuItemType::recentItemsDocs:
        item->noRecentItemsOlderThan = record.noRecentItemsOlderThan;
        item->maxNumberOfRecentItems = record.maxNumberOfRecentItems;
        break;
    default:
        break;
    }
    return item;
}

const MainMenuItem::Info* MainMenuItem::menuItemInfo(MenuItemType type)
{
    static const auto table = makeMenuItemInfo();
    const auto index = static_cast<std::size_t>(type);
    return index < table.size() ? &table[index] : nullptr;
}

MainMenuItem::List& MainMenuItem::actualMenuItems()
{
    static List items;
    return items;
}

void MainMenuItem::dumpActualMenuItems(std::ostream& out)
{
    out << "contents of MainMenuItem.actualMenuItems[] :\n";
    if (actualMenuItems().empty()) {
        out << "  (array is empty)\n";
        return;
    }
    out << "\n\n";
    for (const auto& item : actualMenuItems()) {
        const auto url = item->fileURL ? std::optional(item->fileURL->standardized().absoluteString()) : std::nullopt;
        const auto date =
            item->noRecentItemsOlderThan ? std::optional(item->noRecentItemsOlderThan->description()) : std::nullopt;
        out << "displayString     = \"" << item->displayString << "\"\n"
            << "    type          = ." << rawValue(item->menuItemType) << "\n"
            << "    unixPath      = " << optionalText(item->unixPath, "\"") << "\n"
            << "    URL           = " << optionalText(url, "") << "\n"
            << "    newerThan     = " << optionalText(date, "") << "\n"
            << "    maxNumber     = " << item->maxNumberOfRecentItems << "\n"
            << "    optionFlagsSv = " << hexadecimal(item->optionFlagsSv.rawValue()) << "\n"
            << "    optionFlagsDv = " << hexadecimal(item->optionFlagsDv.rawValue()) << "\n"
            << "\n";
    }
}

void MainMenuItem::dumpActualMenuItems()
{
    dumpActualMenuItems(std::cout);
    std::cout.flush();
}

} // namespace quillbox
