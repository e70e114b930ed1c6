#include "PathRows.h"

#include "Bundle.h"
#include "Debug.h"
#include "FileManager.h"
#include "LinkChain.h"
#include "MenuGraphics.h"
#include "MenuSelectors.h"
#include "NSMenuDynamic.h"
#include "NSWorkspace.h"
#include "PrefPaneTitles.h"
#include "Unicode.h"

namespace quillbox {

namespace {

    constexpr std::string_view kCreateRecursive = "createRecursiveMenuItem(forPathURL:displayString:isTopLevel:"
                                                  "returnNilIfDoesntExist:optionFlagsSv:optionFlagsDv:)";
    constexpr std::string_view kCreateSubMenu =
        "createSubMenuItems(directoryURL:returnNilIfNoDir:optionFlagsSv:optionFlagsDv:)";

    constexpr URLResourceKey kEntryKeys = URLResourceKey::isHidden | URLResourceKey::isDirectory
        | URLResourceKey::isPackage | URLResourceKey::hasHiddenExtension | URLResourceKey::isAliasFile
        | URLResourceKey::isSymbolicLink;

    // An entry as it was found, before links are followed.
    struct Entry {
        const std::string& path;
        URLResourceValues values;
        DirectoryListing::EntryKind kind;
        // The last component of the path, unless a title was given.
        std::string title;
        bool isTitleGiven;
        // Null if the entry was not found in a listing.
        std::shared_ptr<const DirectoryListing> listing;
        std::size_t index = 0;
    };

    bool isTrue(const std::optional<bool>& value)
    {
        return value.value_or(false);
    }

    // Returns the path as a line of its own for the log.
    std::string quotedLine(const std::string& path)
    {
        return "  \"" + unicode::displayText(path) + "\"";
    }

    NSImage menuIcon(const std::string& path, DirectoryListing::EntryKind kind)
    {
        NSImage image = NSWorkspace::sharedWorkspace().icon(path, kind);
        image.setSize(menuIconSize);
        return image;
    }

    std::string prefPaneDisplayName(const std::string& fileName, const std::string& path)
    {
        if (const auto title = prefPaneTitle(fileName))
            return std::string(*title);
        if (const auto bundle = Bundle::atPath(path)) {
            if (const auto name = bundle->infoString("CFBundleName"))
                return *name;
            if (const auto name = bundle->infoString("CFBundleExecutable"))
                return *name;
        }
        return path::deletingPathExtension(fileName);
    }

    // `path` and `values` are those of the end to which the entry leads.
    std::string shownTitle(Entry& entry, const std::string& path, const URLResourceValues& values,
                           MenuOptionFlagsDv flags)
    {
        if (!entry.isTitleGiven) {
            if (flags.contains(menuOptionFlagsDv::prefPaneDisplayNames) && isTrue(values.isPackage)
                && path::pathExtension(path) == "prefPane")
                return prefPaneDisplayName(entry.title, path);
            if (isTrue(values.hasHiddenExtension))
                return path::deletingPathExtension(entry.title);
        }
        return std::move(entry.title);
    }

    void attachDirectoryMenu(NSMenuItemPlus& row, const std::string& path, const RowOwner& owner, RowOptions options)
    {
        auto submenu = std::make_shared<NSMenuDynamic>();
        submenu->setTitle(row.title());
        submenu->menuDynamicContentsType = menuDynamicContents::directoryContents;
        submenu->setDelegate(owner.menuDelegate);
        submenu->pathForMenuItems = path;
        submenu->optionFlagsSv = options.sv;
        submenu->optionFlagsDv = options.dv;
        row.setSubmenu(std::move(submenu));
    }

    std::shared_ptr<NSMenuItem> entryRow(Entry entry, RowPlace place, const RowOwner& owner, RowOptions options)
    {
        if (place != RowPlace::topLevel && isTrue(entry.values.isHidden)
            && !options.sv.contains(menuOptionFlagsSv::showHiddenItems))
            return nullptr;
        NSImage icon = menuIcon(entry.path, entry.kind);
        std::optional<LinkEnd> end;
        if (isTrue(entry.values.isAliasFile) || isTrue(entry.values.isSymbolicLink))
            end = endOfLinks(entry.path);
        const std::string& path = end ? end->path : entry.path;
        const URLResourceValues& values = end ? end->values : entry.values;
        auto row = NSMenuItemPlus::make(shownTitle(entry, path, values, options.dv), &selectors::openTheClickedFile);
        row->setImage(std::move(icon));
        row->setTarget(owner.target);
        row->isDirectory = isTrue(values.isDirectory) && !isTrue(values.isPackage);
        if (options.sv.contains(menuOptionFlagsSv::showPathAsTooltip))
            row->setToolTip(unicode::displayText(path));
        if (row->isDirectory)
            attachDirectoryMenu(*row, path, owner, options);
        if (entry.listing && !end)
            row->setEntryToOpen(std::move(entry.listing), entry.index);
        else
            row->setPathToOpen(path);
        Debug::dynamicMenuItems().push_back({ row });
        return row;
    }

    // Makes the rows for a directory that could not be listed.
    Made<std::optional<ItemList>> unlistedRows(const std::string& path)
    {
        const Result<FileKind> kind = FileManager::defaultManager().kind(path);
        if (!kind)
            return { ItemList { textRow("Directory Doesn't Exist") }, {} };
        if (*kind == FileKind::directory)
            return { ItemList { textRow("Insufficient Permissions") }, {} };
        return { ItemList { textRow("This Is a File Not a Dir") },
                 { { kCreateSubMenu, ".fileExists() says it's a valid file (not directory)?\n" + quotedLine(path) } } };
    }

    // Makes the row for a path that can't be looked at.
    Made<std::shared_ptr<NSMenuItem>> refusedRow(const std::string& path, IfMissing ifMissing)
    {
        const bool exists = FileManager::defaultManager().fileExists(path);
        if (!exists && ifMissing == IfMissing::leaveOut)
            return {};
        return { textRow((exists ? "Permissions Error?: " : "File Not Found?: ") + unicode::displayText(path)),
                 { { kCreateRecursive, "resourceValues() returned nil for path:\n" + quotedLine(path) } } };
    }

    void append(std::vector<RowProblem>& problems, std::vector<RowProblem> more)
    {
        problems.insert(problems.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    }

} // namespace

Made<std::shared_ptr<NSMenuItem>> pathRow(const URL& pathURL, const std::optional<std::string>& title, RowPlace place,
                                          IfMissing ifMissing, const RowOwner& owner, RowOptions options)
{
    const std::string& path = pathURL.path();
    auto values = pathURL.resourceValues(kEntryKeys);
    if (!values)
        return refusedRow(path, ifMissing);
    return { entryRow({ path, std::move(*values), DirectoryListing::EntryKind::unknown,
                        title ? *title : unicode::displayText(path::lastPathComponent(path)), title.has_value(),
                        nullptr },
                      place, owner, options),
             {} };
}

Made<std::optional<ItemList>> directoryRows(const URL& directoryURL, IfMissing ifMissing, const RowOwner& owner,
                                            RowOptions options)
{
    const std::string& path = directoryURL.path();
    auto listed = FileManager::defaultManager().contentsOfDirectory(
        directoryURL,
        options.sv.contains(menuOptionFlagsSv::showHiddenItems) ? DirectoryEnumerationOptions::none
                                                                : DirectoryEnumerationOptions::skipsHiddenFiles);
    if (ifMissing == IfMissing::leaveOut && (!listed || listed->isEmpty()))
        return {};
    if (!listed)
        return unlistedRows(path);
    if (listed->isEmpty())
        return { ItemList { textRow("Empty Directory") }, {} };

    ItemList rows;
    const auto listing = std::make_shared<const DirectoryListing>(std::move(*listed));
    rows.reserve(listing->count());
    std::vector<RowProblem> problems;
    std::string entryPath;
    for (std::size_t index = 0; index < listing->count(); ++index) {
        // Entries are looked at only if the listing does not tell enough.
        auto values = listing->knownResourceValues(index);
        const auto kind = values ? listing->kind(index) : DirectoryListing::EntryKind::unknown;
        if (!values) {
            auto looked = listing->resourceValues(index, kEntryKeys);
            if (!looked) {
                auto refused = refusedRow(listing->path(index), IfMissing::saySo);
                rows.push_back(std::move(refused.value));
                append(problems, std::move(refused.problems));
                continue;
            }
            values = std::move(*looked);
        }
        listing->getPath(index, entryPath);
        auto row = entryRow(
            { entryPath, std::move(*values), kind, unicode::displayText(listing->name(index)), false, listing, index },
            RowPlace::inDirectory, owner, options);
        if (row)
            rows.push_back(std::move(row));
    }
    if (rows.empty()) {
        problems.push_back({ kCreateSubMenu, "This directory only contains hidden files?\n" + quotedLine(path) });
        return { ItemList { textRow("This Directory Only Contains Hidden Files?") }, std::move(problems) };
    }
    return { sortedByTitle(std::move(rows), options.sv.contains(menuOptionFlagsSv::ignoreArticles)),
             std::move(problems) };
}

std::shared_ptr<NSMenuItemPlus> fileRow(const std::string& path, const RowOwner& owner, RowOptions options)
{
    std::string title = unicode::displayText(path::lastPathComponent(path));
    const auto values = URL::fileURLWithPath(path).resourceValues(URLResourceKey::hasHiddenExtension);
    if (values && isTrue(values->hasHiddenExtension))
        title = path::deletingPathExtension(title);
    auto row = std::make_shared<NSMenuItemPlus>(std::move(title), &selectors::openTheClickedFile);
    row->setImage(menuIcon(path, DirectoryListing::EntryKind::unknown));
    row->setTarget(owner.target);
    row->setPathToOpen(path);
    if (options.sv.contains(menuOptionFlagsSv::showPathAsTooltip))
        row->setToolTip(unicode::displayText(path));
    return row;
}

} // namespace quillbox
