#pragma once

#include "Date.h"

namespace quillbox {

// Tells when the user's days begin.
class TimeZone {
public:
    virtual ~TimeZone() = default;

    // Returns how many seconds the zone's clocks are ahead of UTC at that moment.
    virtual int secondsFromGMT(Date at) const = 0;
    // Returns the first moment of the next calendar day. A day may have 23 or 25 hours.
    Date startOfDayAfter(Date moment) const;

    // Returns the zone that is installed, otherwise the system's.
    static const TimeZone& current();
};

} // namespace quillbox
