#pragma once

#include "Date.h"

namespace quillbox {

// Where the person's days begin. The one in use is the system's; tests install one of their own.
class TimeZone {
public:
    virtual ~TimeZone() = default;

    // How far the zone's clocks are ahead of UTC at that moment.
    virtual int secondsFromGMT(Date at) const = 0;
    // The first moment of the next calendar day: a day may have 23 or 25 hours.
    Date startOfDayAfter(Date moment) const;

    static const TimeZone& current();
    // `zone` must outlive its use; null puts the system's back.
    static void install(const TimeZone* zone);
};

} // namespace quillbox
