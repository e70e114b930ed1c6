#include "TimeZone.h"

#include "Installed.h"

#include <cmath>
#include <ctime>

namespace quillbox {

namespace {

    constexpr double kDay = 86'400; // in seconds, if the clocks are not changed

    class SystemTimeZone final : public TimeZone {
    public:
        int secondsFromGMT(Date at) const override
        {
            const auto seconds = static_cast<std::time_t>(std::floor(at.secondsSinceUnixEpoch()));
            std::tm parts {};
            localtime_r(&seconds, &parts);
            return static_cast<int>(parts.tm_gmtoff);
        }
    };

} // namespace

Date TimeZone::startOfDayAfter(Date moment) const
{
    const int offset = secondsFromGMT(moment);
    const double midnight = (std::floor((moment.secondsSinceUnixEpoch() + offset) / kDay) + 1) * kDay;
    // The clocks may be changed before that midnight.
    double today = midnight - secondsFromGMT(Date::sinceUnixEpoch(midnight - offset));
    const auto isNextDay = [&](double time) { return time + secondsFromGMT(Date::sinceUnixEpoch(time)) >= midnight; };
    if (isNextDay(today))
        return Date::sinceUnixEpoch(today);
    // The clocks skip that midnight: where they go forward at midnight, the next day begins with 01:00, at the moment
    // of the change.
    double tomorrow = midnight - offset;
    while (tomorrow - today > 1) {
        const double between = std::floor((today + tomorrow) / 2);
        (isNextDay(between) ? tomorrow : today) = between;
    }
    return Date::sinceUnixEpoch(tomorrow);
}

const TimeZone& TimeZone::current()
{
    static const SystemTimeZone system;
    const TimeZone* const installed = Installed<const TimeZone>::current();
    return installed ? *installed : system;
}

} // namespace quillbox
