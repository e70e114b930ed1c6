#pragma once

#include "Date.h"

namespace quillbox {

// Where the person's days begin.
class TimeZone {
public:
    virtual ~TimeZone() = default;

    // How far the zone's clocks are ahead of UTC at that moment.
    virtual int secondsFromGMT(Date at) const = 0;
    // The first moment of the next calendar day: a day may have 23 or 25 hours.
    Date startOfDayAfter(Date moment) const;

    // The zone that is Installed, else the system's.
    static const TimeZone& current();
};

} // namespace quillbox
