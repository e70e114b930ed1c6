#include "RecentlyUsedList.h"

#include "FileContents.h"
#include "GLibPointer.h"
#include "URL.h"

#include <glib.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <unordered_map>

namespace quillbox {

namespace {

    constexpr std::size_t kLargestList = 64 << 20;

    using UtcZone = GLibPointer<GTimeZone, g_time_zone_unref>;

    // Returns seconds since 1970, or 0 if the text is no date.
    double momentOf(const char* text, const UtcZone& utc)
    {
        const GLibPointer<GDateTime, g_date_time_unref> moment(g_date_time_new_from_iso8601(text, utc.get()));
        return moment
            ? static_cast<double>(g_date_time_to_unix(moment.get())) + g_date_time_get_microsecond(moment.get()) / 1e6
            : 0;
    }

    // Returns the file name of the program that a command starts; empty if the command can't be understood. GTK puts
    // quotes around the whole command.
    std::string programOf(std::string command)
    {
        if (command.size() > 1 && command.front() == '\'' && command.back() == '\'')
            command = command.substr(1, command.size() - 2);
        char** words = nullptr;
        if (!g_shell_parse_argv(command.c_str(), nullptr, &words, nullptr))
            return {};
        const GLibTexts owned(words);
        return std::string(path::lastPathComponent(words[0]));
    }

    class ListReader {
    public:
        void addBookmark(const pugi::xml_node& bookmark)
        {
            double when = 0;
            for (const char* name : { "modified", "visited", "added" })
                when = std::max(when, momentOf(bookmark.attribute(name).value(), utc_));
            bool isPrivate = false;
            for (const pugi::xml_node& metadata : bookmark.child("info").children("metadata")) {
                isPrivate = isPrivate || metadata.child("bookmark:private");
                for (const pugi::xml_node& application :
                     metadata.child("bookmark:applications").children("bookmark:application"))
                    addApplication(application);
            }
            if (!isPrivate)
                uses_.addFile(bookmark.attribute("href").value(), when);
        }

        RecentUses take()
        {
            for (auto& [key, use] : applications_)
                uses_.applications.push_back(std::move(use));
            return std::move(uses_);
        }

    private:
        void addApplication(const pugi::xml_node& application)
        {
            const std::string name = application.attribute("name").value();
            const std::string command = application.attribute("exec").value();
            double when = momentOf(application.attribute("modified").value(), utc_);
            // Older lists have a number of seconds instead of a date.
            when = std::max(when, std::strtod(application.attribute("timestamp").value(), nullptr));
            if (!(when > 0))
                return;
            // A list has thousands of bookmarks with few different programs, so each program is kept only once.
            const auto [found, isNew] = applications_.try_emplace(name + '\n' + command);
            ApplicationUse& use = found->second;
            if (isNew)
                use = { name + ".desktop", programOf(command), name, when };
            use.when = std::max(use.when, when);
        }

        UtcZone utc_ { g_time_zone_new_utc() };
        RecentUses uses_;
        // The key is the name, a line feed and the command.
        std::unordered_map<std::string, ApplicationUse> applications_;
    };

} // namespace

std::optional<RecentUses> RecentlyUsedList::read()
{
    Result<Data> bytes = readFile(file(), kLargestList);
    if (!bytes)
        return bytes.error().code == ENOENT ? std::optional(RecentUses()) : std::nullopt;
    pugi::xml_document document;
    // If there is an error in the text, the document still has what comes before it.
    document.load_buffer_inplace(bytes->data(), bytes->size(), pugi::parse_minimal | pugi::parse_escapes);
    ListReader reader;
    for (const pugi::xml_node& bookmark : document.child("xbel").children("bookmark"))
        reader.addBookmark(bookmark);
    return reader.take();
}

} // namespace quillbox
