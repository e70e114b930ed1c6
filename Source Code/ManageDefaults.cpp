#include "ManageDefaults.h"

#include "BookmarkSearch.h"
#include "Debug.h"
#include "MainMenuItemSaver.h"
#include "UserDefaults.h"

#include <algorithm>
#include <optional>

namespace quillbox {

namespace {

    const std::string kUserPickedMenuItems = "UserPickedMenuItems";
    const std::string kMenuSaveVersion = "MenuSaveVersion";
    const std::string kOldSaveVersion = "saveVersion";
    const std::string kShowDebugTab = "ShowDebugTab";

    void logLoadError(int line, const std::string& message)
    {
        Debug::addErrorLogEntry("ManageDefaults", "loadAppMenusFromDisk(onlyLoadIfNeeded:)", __FILE__, line, false,
                                message);
    }

    // Whether the default list is in use because the settings could not be read, not because they hold none.
    bool isListProvisional = false;

    // How many changes of other programs the settings in use go by.
    std::uint64_t knownChanges = 0;

    // What one load has found so far; committed as a whole or not at all.
    struct Load {
        MainMenuItem::List items;
        std::vector<ManageDefaults::FileReference> fileReferences;
        // Whether some bookmark should be made anew.
        bool needsSave = false;
        bool isProvisional = false;
    };

    Load defaultLoad()
    {
        return { ManageDefaults::defaultMenuItems(), {}, false, false };
    }

    bool isReloadNeeded()
    {
        if (isListProvisional)
            return true;
        for (const auto& item : MainMenuItem::actualMenuItems()) {
            if (item->menuItemType == MenuItemType::arbitraryPath && !item->fileURL)
                return true;
        }
        for (const auto& [reference, recordedPath] : ManageDefaults::fileReferences()) {
            const auto path = reference.path();
            // Paths are compared by their bytes, so that a rename between names that Unicode considers equal is
            // noticed.
            if (path != recordedPath)
                return true;
        }
        return false;
    }

    // Whether the bookmark could not be resolved at the last load either. It was saved then, and saving it again would
    // change nothing.
    bool failedBefore(const Data& bookmark)
    {
        const MainMenuItem::List& items = MainMenuItem::actualMenuItems();
        return std::any_of(items.begin(), items.end(), [&bookmark](const auto& item) {
            return item->menuItemType == MenuItemType::arbitraryPath && !item->fileURL
                && item->bookmarkDataRaw == bookmark;
        });
    }

    void recordFileReference(const MainMenuItemSaver& record, Load& load)
    {
        bool isStale = false;
        const Result<URL> url = URL::resolvingBookmarkData(record.bookmarkData, isStale);
        if (!url) {
            if (FileManager::defaultManager().fileExists(record.unixPath)) {
                logLoadError(__LINE__, "resolvingBookmarkData() returned error: " + url.error().description());
                load.needsSave = load.needsSave || !failedBefore(record.bookmarkData);
            }
            return;
        }
        if (isStale)
            load.needsSave = true;
        const Result<FileReferenceURL> reference = url->fileReferenceURL();
        if (!reference) {
            logLoadError(__LINE__, "fileReferenceURL() returned nil");
            load.needsSave = true;
            return;
        }
        load.fileReferences.push_back(
            { *reference, reference->path().value_or("the fileReference is valid, why is its path nil?") });
    }

    Load buildList(const std::vector<MainMenuItemSaver>& records)
    {
        Load load;
        load.items.push_back(std::make_shared<MainMenuItem>(MenuItemType::fixedAppPreferences));
        std::size_t problemCount = 0;
        for (const MainMenuItemSaver& record : records) {
            const auto item = MainMenuItem::fromRecord(record);
            if (!item) {
                ++problemCount;
                continue;
            }
            if (item->menuItemType == MenuItemType::fixedAppPreferences)
                continue;
            load.items.push_back(item);
            if (item->menuItemType == MenuItemType::arbitraryPath && !record.bookmarkData.empty())
                recordFileReference(record, load);
        }
        if (problemCount > 0)
            logLoadError(__LINE__,
                         kUserPickedMenuItems + " contained " + std::to_string(problemCount)
                             + " entries that coudn't be turned into actual menu-items"
                             + " (so the problem entries were skipped)");
        return load;
    }

    Result<std::vector<MainMenuItemSaver>> decodeCurrent(const Data& bytes, std::int64_t version)
    {
        if (version == ManageDefaults::menusSaveVersion)
            return MainMenuItemSaver::decodeList(bytes);
        const auto oldRecords = MainMenuItemSaver_v1::decodeList(bytes);
        if (!oldRecords)
            return oldRecords.error();
        std::vector<MainMenuItemSaver> records;
        records.reserve(oldRecords->size());
        for (const MainMenuItemSaver_v1& record : *oldRecords)
            records.push_back(record.upgraded());
        return records;
    }

    // Returns nothing if the list in use must stay.
    std::optional<Load> readList()
    {
        UserDefaults& defaults = UserDefaults::standard();
        const auto value = defaults.object(kUserPickedMenuItems);
        if (!value) {
            Load load = defaultLoad();
            load.isProvisional = !defaults.isReadable();
            return load;
        }
        const Data* bytes = value->as<Data>();
        if (!bytes) {
            logLoadError(__LINE__,
                         "UserDefaults found a non-Data type for " + kUserPickedMenuItems
                             + " (so assuming the default menus)");
            return defaultLoad();
        }
        const std::int64_t version = defaults.integer(kMenuSaveVersion);
        if (version < 0 || version > ManageDefaults::menusSaveVersion) {
            logLoadError(__LINE__,
                         "UserDefaults prefsMenusSaveVersion had an unexpected value: " + std::to_string(version));
            return std::nullopt;
        }
        const auto records = decodeCurrent(*bytes, version);
        if (!records) {
            logLoadError(__LINE__,
                         "PropertyListDecoder.decode() couldn't decode \"" + kUserPickedMenuItems
                             + "\" (so assuming the default menus)");
            return defaultLoad();
        }
        return buildList(*records);
    }

    void commit(Load load)
    {
        isListProvisional = load.isProvisional;
        auto& accessed = ManageDefaults::securityScopedURLs();
        for (const URL& url : accessed)
            url.stopAccessingSecurityScopedResource();
        accessed.clear();
        for (const auto& item : load.items) {
            if (item->fileURL && item->fileURL->startAccessingSecurityScopedResource())
                accessed.push_back(*item->fileURL);
        }
        ManageDefaults::fileReferences() = std::move(load.fileReferences);
        MainMenuItem::actualMenuItems() = std::move(load.items);
        if (load.needsSave)
            ManageDefaults::saveAppMenusToDisk();
    }

} // namespace

bool ManageDefaults::saveAppMenusToDisk()
{
    std::vector<MainMenuItemSaver> records;
    records.reserve(MainMenuItem::actualMenuItems().size());
    for (const auto& item : MainMenuItem::actualMenuItems())
        records.emplace_back(*item);

    const Result<Data> bytes = MainMenuItemSaver::encodeList(records);
    if (!bytes) {
        Debug::addErrorLogEntry("ManageDefaults", "saveAppMenusToDisk()", __FILE__, __LINE__, false,
                                "couldn't encode .actualMenuItems for saving [.menusSaveVersion="
                                    + std::to_string(menusSaveVersion) + "]: " + bytes.error().description());
        UserDefaults::standard().reportFailure(bytes.error());
        return false;
    }
    UserDefaults& defaults = UserDefaults::standard();
    defaults.set(menusSaveVersion, kMenuSaveVersion);
    defaults.set(*bytes, kUserPickedMenuItems);
    defaults.removeObject(kOldSaveVersion);
    return true;
}

void ManageDefaults::loadAppMenusFromDisk(bool onlyLoadIfNeeded)
{
    if (onlyLoadIfNeeded && (loadChangesOfOthers() || !isReloadNeeded()))
        return;
    const BookmarkSearchBound bound;
    knownChanges = UserDefaults::standard().changesOfOthers();
    if (std::optional<Load> load = readList())
        commit(std::move(*load));
}

bool ManageDefaults::saveAllToDisk()
{
    UserDefaults::standard().set(showDebugTab(), kShowDebugTab);
    return saveAppMenusToDisk();
}

void ManageDefaults::loadAllFromDisk()
{
    UserDefaults& defaults = UserDefaults::standard();
    showDebugTab() = defaults.object(kShowDebugTab) && defaults.boolean(kShowDebugTab);
    loadAppMenusFromDisk(false);
}

bool ManageDefaults::loadChangesOfOthers()
{
    if (UserDefaults::standard().changesOfOthers() == knownChanges)
        return false;
    loadAllFromDisk();
    return true;
}

const MainMenuItem::List& ManageDefaults::defaultMenuItems()
{
    static const MainMenuItem::List items {
        std::make_shared<MainMenuItem>(MenuItemType::fixedAppPreferences),
        std::make_shared<MainMenuItem>(MenuItemType::separator),
        std::make_shared<MainMenuItem>(MenuItemType::systemSettings),
        std::make_shared<MainMenuItem>(MenuItemType::separator),
        std::make_shared<MainMenuItem>(MenuItemType::systemApplicationsDirectory),
    };
    return items;
}

bool& ManageDefaults::showDebugTab()
{
    static bool show = false;
    return show;
}

std::vector<ManageDefaults::FileReference>& ManageDefaults::fileReferences()
{
    static std::vector<FileReference> references;
    return references;
}

std::vector<URL>& ManageDefaults::securityScopedURLs()
{
    static std::vector<URL> urls;
    return urls;
}

} // namespace quillbox
