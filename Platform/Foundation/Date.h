#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace quillbox {

// An absolute point in time: seconds since 2001-01-01 00:00:00 UTC, as property lists store it. Negative
// before that moment; fractions are kept.
struct Date {
    double secondsSinceReferenceDate = 0;

    // Seconds between 1970-01-01 and 2001-01-01, both 00:00:00 UTC.
    static constexpr double kUnixEpochOffset = 978307200.0;

    static constexpr Date sinceUnixEpoch(double seconds) { return Date { seconds - kUnixEpochOffset }; }
    constexpr double secondsSinceUnixEpoch() const { return secondsSinceReferenceDate + kUnixEpochOffset; }
    constexpr Date addingSeconds(double seconds) const { return Date { secondsSinceReferenceDate + seconds }; }

    // The present moment as the installed clock tells it (see Clock.h).
    static Date now();

    // Formats the date as "yyyy-MM-dd HH:mm:ss +0000", in UTC and whole seconds (rounded down); the year has at least
    // four digits.
    std::string description() const;

    friend constexpr auto operator<=>(const Date&, const Date&) = default;
};

} // namespace quillbox
