#include "Date.h"

#include "Clock.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace quillbox {

Date Date::now()
{
    return Clock::current().now();
}

std::string Date::description() const
{
    if (std::isnan(secondsSinceReferenceDate))
        return "no date";
    // The limit is some hundred million years either way, which leaves the steps below room in 64 bits.
    constexpr double kFarthest = 9e15;
    const auto seconds =
        static_cast<std::int64_t>(std::floor(std::clamp(secondsSinceUnixEpoch(), -kFarthest, kFarthest)));

    std::int64_t days = seconds / 86400;
    std::int64_t ofDay = seconds % 86400;
    if (ofDay < 0) {
        ofDay += 86400;
        --days;
    }

    // The Gregorian calendar in eras of 400 years that begin on a first of March, so that the leap day is a
    // year's last day.
    days += 719468;
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const std::int64_t dayOfEra = days - era * 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const std::int64_t day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
    const std::int64_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    const std::int64_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);

    char text[64];
    std::snprintf(text, sizeof text, "%s%04lld-%02d-%02d %02d:%02d:%02d +0000", year < 0 ? "-" : "",
                  static_cast<long long>(year < 0 ? -year : year), static_cast<int>(month), static_cast<int>(day),
                  static_cast<int>(ofDay / 3600), static_cast<int>(ofDay / 60 % 60), static_cast<int>(ofDay % 60));
    return text;
}

} // namespace quillbox
