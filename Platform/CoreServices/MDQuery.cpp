#include "MDQuery.h"

#include "Installed.h"
#include "TimeZone.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace quillbox {

namespace {

    // Returns the moment in a text such as "( InRange (kMDItemLastUsedDate ,          $time.iso(2024-03-05 14:07:09
    // +0000) ,  ...", or nothing if the text has another form.
    std::optional<Date> cutOffOf(const std::string& text)
    {
        static constexpr std::string_view kBefore = "( InRange (kMDItemLastUsedDate ,          $time.iso(";
        static constexpr std::string_view kAfter = ") ,          $time.today(+1d)    ))";
        static constexpr std::size_t kDateLength = std::string_view("2024-03-05 14:07:09 +0000").size();
        if (text.size() != kBefore.size() + kDateLength + kAfter.size() || !text.starts_with(kBefore)
            || !text.ends_with(kAfter))
            return std::nullopt;
        std::tm parts {};
        const std::string date = text.substr(kBefore.size(), kDateLength);
        int parsed = 0;
        if (std::sscanf(date.c_str(), "%4d-%2d-%2d %2d:%2d:%2d +0000%n", &parts.tm_year, &parts.tm_mon, &parts.tm_mday,
                        &parts.tm_hour, &parts.tm_min, &parts.tm_sec, &parsed)
                != 6
            || parsed != static_cast<int>(kDateLength))
            return std::nullopt;
        parts.tm_year -= 1900;
        parts.tm_mon -= 1;
        return Date::sinceUnixEpoch(static_cast<double>(timegm(&parts)));
    }

} // namespace

std::optional<std::string> MDItem::copyAttribute(std::string_view name) const
{
    return name == kMDItemPath ? std::optional(path_) : std::nullopt;
}

MDQuery::MDQuery(std::string queryText, std::vector<std::string_view> sortingAttributes)
    : queryText_(std::move(queryText)),
      sortingAttributes_(std::move(sortingAttributes))
{
}

bool MDQuery::execute()
{
    results_.clear();
    const auto cutOff = cutOffOf(queryText_);
    MetadataIndex* const index = Installed<MetadataIndex>::current();
    if (!cutOff || !index || sortingAttributes_ != std::vector { kMDItemLastUsedDate })
        return false;
    for (std::string& path : index->pathsLastUsed(*cutOff, TimeZone::current().startOfDayAfter(Date::now())))
        results_.emplace_back(std::move(path));
    return true;
}

} // namespace quillbox
