#include "MDQuery.h"
#include "Installed.h"
#include "ManualClock.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    struct RecordingIndex final : MetadataIndex {
        std::vector<std::string> pathsLastUsed(Date from, Date until) override
        {
            asked += from.description() + " to " + until.description();
            return {};
        }
        std::string asked;
        const Installed<MetadataIndex> installed { *this };
    };

    // A zone whose clocks change once.
    struct ChangingZone final : TimeZone {
        int secondsFromGMT(Date at) const override { return at < changed ? before : after; }
        Date changed;
        int before = 0;
        int after = 0;
        const Installed<const TimeZone> installed { *this };
    };

    const std::string kQuery = "( InRange (kMDItemLastUsedDate ,          $time.iso(2024-03-05 14:07:09 +0000) ,"
                               "          $time.today(+1d)    ))";

    TEST(MDQuery, AsksForTheTimeUntilTomorrowByTheCalendar)
    {
        RecordingIndex index;
        ChangingZone zone;
        // When the clocks change and the offsets before and after, the time now, and when the day ends.
        for (const auto& [name, changed, before, after, now, end] : {
                 std::tuple("before a day of 23 hours", 1711846800, 3600, 7200, 1711828800, "2024-03-30 23:00:00"),
                 { "in a day of 23 hours", 1711846800, 3600, 7200, 1711800000, "2024-03-30 23:00:00" },
                 { "after the change", 1711846800, 3600, 7200, 1711890000, "2024-03-31 22:00:00" },
                 // Santiago, 2024-09-08: 23:59:59 is followed by 01:00:00.
                 { "before a day that begins at 01:00", 1725768000, -14400, -10800, 1725750000, "2024-09-08 04:00:00" },
                 { "in a day that began at 01:00", 1725768000, -14400, -10800, 1725768000, "2024-09-09 03:00:00" },
                 // Santiago, 2024-04-06: 23:59:59 is followed by 23:00:00 of the same day.
                 { "a last hour that comes twice", 1712458800, -10800, -14400, 1712440000, "2024-04-07 04:00:00" },
             }) {
            const ManualClock clock(Date::sinceUnixEpoch(now));
            zone.changed = Date::sinceUnixEpoch(changed);
            zone.before = before;
            zone.after = after;
            index.asked.clear();
            EXPECT_TRUE(MDQuery(kQuery, { kMDItemLastUsedDate }).execute());
            EXPECT_EQ(index.asked, "2024-03-05 14:07:09 +0000 to " + std::string(end) + " +0000") << name;
        }
    }

    TEST(MDQuery, UnderstandsOneFormOnly)
    {
        RecordingIndex index;
        for (const std::string& text : { std::string(), kQuery + " ", kQuery.substr(1),
                                         std::string(kQuery).replace(kQuery.find("14:07"), 5, "14:xx") }) {
            MDQuery query(text, { kMDItemLastUsedDate });
            EXPECT_FALSE(query.execute()) << text;
            EXPECT_EQ(query.resultCount(), 0U);
        }
        EXPECT_EQ(index.asked, "");
    }

} // namespace

} // namespace quillbox
