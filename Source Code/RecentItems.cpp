#include "RecentItems.h"

#include "CanonicalPath.h"
#include "FileManager.h"
#include "MainMenuItem.h"
#include "MDQuery.h"
#include "MenuSelectors.h"
#include "NameOrder.h"
#include "NSWorkspace.h"
#include "PathRows.h"

#include <optional>
#include <string_view>
#include <unordered_set>

namespace quillbox {

namespace {

    enum class UseKind { application, document };

    // Returns how the lists show the path; nothing if they leave it out, or if it does not exist.
    std::optional<UseKind> useKindOf(const std::string& path, std::string_view extension)
    {
        const Result<FileKind> kind = FileManager::defaultManager().kind(path);
        if (!kind)
            return std::nullopt;
        if (*kind == FileKind::file)
            return UseKind::document;
        if (!isPackageName(path::lastPathComponent(path)) || extension == "prefPane")
            return std::nullopt;
        return extension == "app" ? UseKind::application : UseKind::document;
    }

    void sortByLastComponent(PathList& paths)
    {
        NameOrder order(paths.size());
        for (const std::string& path : paths)
            order.add(path::lastPathComponent(path));
        PathList sorted;
        sorted.reserve(paths.size());
        for (const std::uint32_t position : order.sortedPositions())
            sorted.push_back(std::move(paths[position]));
        paths = std::move(sorted);
    }

    void appendFileRows(ItemList& rows, const PathList& paths, const RowOwner& owner, RowOptions options)
    {
        if (paths.empty()) {
            rows.push_back(textRow("None"));
            setNamedImage(*rows.back(), NSImageNameStatusNone);
        }
        for (const std::string& path : paths)
            rows.push_back(fileRow(path, owner, options));
    }

    std::shared_ptr<NSMenuItem> clearMenuRow(const std::shared_ptr<MainMenuItem>& item, const RowOwner& owner)
    {
        auto row = std::make_shared<NSMenuItemPlus>("Clear Menu", &selectors::clearRecentItemsMenu);
        row->setTarget(owner.target);
        row->setMainMenuItem(item);
        return row;
    }

    std::shared_ptr<NSMenuItem> noteRow(const std::string& menuTitle)
    {
        auto row = std::make_shared<NSMenuItemPlus>();
        row->setAttributedTitle(AttributedString("Note that \"" + menuTitle
                                                 + "\" can only show items\n"
                                                   "that Quillbox can already access, such as items\n"
                                                   "inside directories that Quillbox will browse"));
        return row;
    }

} // namespace

std::pair<PathList, PathList> recentlyUsedPaths(Date lastUsedSince, std::int64_t maxApps, std::int64_t maxDocs,
                                                MenuOptionFlagsSv optionFlagsSv)
{
    MDQuery query("( InRange (kMDItemLastUsedDate ,          $time.iso(" + lastUsedSince.description()
                      + ") ,          $time.today(+1d)    ))",
                  { kMDItemLastUsedDate });
    static_cast<void>(query.execute());

    PathList apps;
    PathList docs;
    std::unordered_set<std::string> listed;
    const auto hasRoomFor = [&](UseKind kind) {
        const bool isApp = kind == UseKind::application;
        return static_cast<std::int64_t>((isApp ? apps : docs).size()) < (isApp ? maxApps : maxDocs);
    };
    for (std::size_t index = query.resultCount(); index > 0; --index) {
        if (!hasRoomFor(UseKind::application) && !hasRoomFor(UseKind::document))
            break;
        const auto path = query.result(index - 1).copyAttribute(kMDItemPath);
        if (!path)
            continue;
        const std::string_view extension = path::pathExtension(*path);
        // This can only be a document, and that list is full. Thousands of documents may come before the next
        // application.
        if (extension != "app" && !hasRoomFor(UseKind::document))
            continue;
        const auto kind = useKindOf(*path, extension);
        if (!kind || !hasRoomFor(*kind))
            continue;
        // Programs record the same file under several paths; only the one used last is listed. Canonical paths are
        // looked up only for entries that would be listed.
        const Result<std::string> canonical = canonicalPath(*path);
        if (listed.insert(canonical ? *canonical : *path).second)
            (*kind == UseKind::application ? apps : docs).push_back(*path);
    }
    if (!optionFlagsSv.contains(menuOptionFlagsSv::sortByDate)) {
        sortByLastComponent(apps);
        sortByLastComponent(docs);
    }
    return { std::move(apps), std::move(docs) };
}

ItemList recentItemsRows(const NSMenuDynamic& menu, const PathList& apps, const PathList& docs,
                         const std::shared_ptr<MainMenuItem>& item, const RowOwner& owner)
{
    const auto kind = menu.menuDynamicContentsType;
    const bool hasApps = kind != menuDynamicContents::recentItemsDocs;
    const bool hasDocs = kind != menuDynamicContents::recentItemsApps;
    const bool hasHeadings = kind == menuDynamicContents::recentItems;
    const RowOptions options { item ? item->optionFlagsSv : MenuOptionFlagsSv(), {} };

    ItemList rows;
    if (hasHeadings)
        rows.push_back(textRow("Applications"));
    if (hasApps)
        appendFileRows(rows, apps, owner, options);
    if (hasHeadings) {
        rows.push_back(NSMenuItem::separatorItem());
        rows.push_back(textRow("Documents"));
    }
    if (hasDocs)
        appendFileRows(rows, docs, owner, options);
    rows.push_back(NSMenuItem::separatorItem());
    const bool hasFiles = (hasApps && !apps.empty()) || (hasDocs && !docs.empty());
    rows.push_back(hasFiles ? clearMenuRow(item, owner) : noteRow(menu.title()));
    return rows;
}

} // namespace quillbox
