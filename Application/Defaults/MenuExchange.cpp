#include "MenuExchange.h"

#include "Bookmark.h"
#include "FileManager.h"
#include "Unicode.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace quillbox {

namespace {

    constexpr std::int64_t kVersion = 1;
    constexpr std::int64_t kMostRecentItems = 1'000'000;

    constexpr std::pair<const char*, MenuOptionFlagsSv> kOptions[] = {
        { "showPlaintextAsDisabled", menuOptionFlagsSv::showPlaintextAsDisabled },
        { "showHiddenItems", menuOptionFlagsSv::showHiddenItems },
        { "showPathAsTooltip", menuOptionFlagsSv::showPathAsTooltip },
        { "sortByDate", menuOptionFlagsSv::sortByDate },
        { "ignoreArticles", menuOptionFlagsSv::ignoreArticles },
    };

    // With a slash at its end.
    std::string home()
    {
        std::string path = FileManager::defaultManager().homeDirectoryForCurrentUser().path();
        return path.ends_with('/') ? path : path + '/';
    }

    bool isText(const std::string& path)
    {
        return unicode::isValidUTF8(path)
            && std::none_of(path.begin(), path.end(), [](char c) { return c >= 0 && c < ' '; });
    }

    std::string exportedPath(const std::string& path)
    {
        if (!isText(path))
            return URL::fileURLWithPath(path).absoluteString();
        const std::string prefix = home();
        return (path + '/').starts_with(prefix) ? "~/" + path.substr(std::min(prefix.size(), path.size())) : path;
    }

    Result<std::string> importedPath(const std::string& text)
    {
        if (text.starts_with("~/"))
            return URL::fileURLWithPath(home() + text.substr(2)).path();
        if (text.starts_with('/'))
            return URL::fileURLWithPath(text).path();
        const Result<URL> url = URL::fromString(text);
        if (!url || !url->path().starts_with('/'))
            return Error { 0, "its \"path\" is neither a whole path nor a file URL", {} };
        return url->path();
    }

    // A date, or its text as property lists in XML have it.
    std::optional<Date> dateIn(const PropertyList& moment)
    {
        if (const Date* date = moment.as<Date>())
            return *date;
        const auto* text = moment.as<std::string>();
        const std::string element = text ? "<plist><date>" + *text + "</date></plist>" : std::string();
        const Result<PropertyList> read = PropertyList::fromData(Data(element.begin(), element.end()));
        const Date* date = read ? read->as<Date>() : nullptr;
        return date ? std::optional(*date) : std::nullopt;
    }

    PropertyList exportedItem(const MainMenuItem& item)
    {
        PropertyList::Dictionary entry { { "kind", std::string(rawValue(item.menuItemType)) },
                                         { "title", unicode::displayText(item.displayString) } };
        if (item.menuItemType == MenuItemType::arbitraryPath)
            entry["path"] = exportedPath(item.unixPath.value_or(""));
        PropertyList::Array options;
        MenuOptionFlagsSv rest = item.optionFlagsSv;
        for (const auto& [name, option] : kOptions) {
            if (rest.contains(option))
                options.emplace_back(name);
            rest.remove(option);
        }
        // Those of a later version.
        if (rest.rawValue() != 0)
            options.emplace_back(std::to_string(rest.rawValue()));
        if (!options.empty())
            entry["options"] = std::move(options);
        if (isRecentItemsKind(item.menuItemType)) {
            if (item.noRecentItemsOlderThan)
                entry["newerThan"] = *item.noRecentItemsOlderThan;
            entry["count"] = item.maxNumberOfRecentItems;
        }
        return entry;
    }

    // Reads one item; what was wrong first is kept.
    class ItemReader {
    public:
        explicit ItemReader(const PropertyList& entry) : entry_(entry) { }

        std::shared_ptr<MainMenuItem> item()
        {
            const auto kind = menuItemType(text("kind").value_or(""));
            if (!kind)
                fail("its \"kind\" is missing or unknown");
            auto item = std::make_shared<MainMenuItem>(kind.value_or(MenuItemType::other), text("title"));
            readOptions(*item);
            if (kind == MenuItemType::arbitraryPath)
                readPath(*item);
            if (kind && isRecentItemsKind(*kind))
                readRecent(*item);
            return item;
        }
        const std::optional<std::string>& problem() const { return problem_; }

    private:
        void fail(std::string problem)
        {
            if (!problem_)
                problem_ = std::move(problem);
        }

        template <class T>
        const T* value(const char* key)
        {
            const PropertyList* found = entry_.value(key);
            const T* content = found ? found->as<T>() : nullptr;
            if (found && !content)
                fail(std::string("its \"") + key + "\" is of another type");
            return content;
        }

        std::optional<std::string> text(const char* key)
        {
            const auto* content = value<std::string>(key);
            return content ? std::optional(*content) : std::nullopt;
        }

        void readOptions(MainMenuItem& item)
        {
            const auto* names = value<PropertyList::Array>("options");
            if (!names)
                return;
            for (const PropertyList& element : *names) {
                const std::string name = element.as<std::string>() ? *element.as<std::string>() : std::string();
                const auto* known = std::find_if(std::begin(kOptions), std::end(kOptions),
                                                 [&](const auto& option) { return option.first == name; });
                std::uint64_t bits = 0;
                const char* end = name.data() + name.size();
                if (known != std::end(kOptions))
                    item.optionFlagsSv.insert(known->second);
                else if (!name.empty() && std::from_chars(name.data(), end, bits).ptr == end)
                    item.optionFlagsSv.insert(MenuOptionFlagsSv(bits));
                else
                    fail("its \"options\" have an unknown \"" + name + "\"");
            }
        }

        void readPath(MainMenuItem& item)
        {
            const Result<std::string> path = importedPath(text("path").value_or(""));
            if (!path) {
                fail(path.error().what);
                return;
            }
            item.unixPath = *path;
            // Until something is there, a bookmark of the path alone.
            Bookmark bookmark;
            bookmark.path = *path;
            item.bookmarkDataRaw = bookmark.encoded();
            if (FileManager::defaultManager().fileExists(*path))
                item.fileURL = URL::fileURLWithPath(*path);
        }

        void readRecent(MainMenuItem& item)
        {
            if (const PropertyList* moment = entry_.value("newerThan")) {
                item.noRecentItemsOlderThan = dateIn(*moment);
                if (!item.noRecentItemsOlderThan)
                    fail("its \"newerThan\" is no date, such as 2026-01-31T00:00:00Z");
            }
            const PropertyList* count = entry_.value("count");
            if (!count)
                return;
            item.maxNumberOfRecentItems = count->asInt64().value_or(-1);
            if (item.maxNumberOfRecentItems < 0 || item.maxNumberOfRecentItems > kMostRecentItems)
                fail("its \"count\" is no number that makes sense");
        }

        const PropertyList& entry_;
        std::optional<std::string> problem_;
    };

} // namespace

PropertyList exportedMenu(const MainMenuItem::List& items)
{
    PropertyList::Array entries;
    for (const auto& item : items)
        entries.push_back(exportedItem(*item));
    return PropertyList::Dictionary { { "quillboxMenu", kVersion }, { "items", std::move(entries) } };
}

Result<ImportedMenu> importedMenu(const PropertyList& menu)
{
    const PropertyList* version = menu.value("quillboxMenu");
    const PropertyList* items = menu.value("items");
    const auto* entries = items ? items->as<PropertyList::Array>() : nullptr;
    if (!version || !entries)
        return Error { 0, "it is no menu of Quillbox", {} };
    if (version->asInt64() != kVersion)
        return Error { 0, "it was made by a later version of Quillbox", {} };
    ImportedMenu imported;
    for (const PropertyList& entry : *entries) {
        ItemReader reader(entry);
        imported.items.push_back(reader.item());
        const MainMenuItem& item = *imported.items.back();
        if (reader.problem())
            return Error { 0, "item " + std::to_string(imported.items.size()) + ": " + *reader.problem(), {} };
        if (item.unixPath && !item.fileURL)
            imported.missingPaths.push_back(*item.unixPath);
    }
    return imported;
}

} // namespace quillbox
