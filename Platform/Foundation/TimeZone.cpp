#include "TimeZone.h"

#include "Installed.h"

#include <cmath>
#include <ctime>

namespace quillbox {

namespace {

    constexpr double kDay = 86'400; // seconds, of clocks that are not changed

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
    // The clocks may change before that midnight.
    const int offsetThen = secondsFromGMT(Date::sinceUnixEpoch(midnight - offset));
    return Date::sinceUnixEpoch(midnight - offsetThen);
}

const TimeZone& TimeZone::current()
{
    static const SystemTimeZone system;
    const TimeZone* const installed = Installed<const TimeZone>::current();
    return installed ? *installed : system;
}

} // namespace quillbox
