#include "MDQuery.h"
#include "Installed.h"
#include "ManualClock.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    class RecordingIndex final : public MetadataIndex {
    public:
        std::vector<std::string> pathsLastUsed(Date from, Date until) override
        {
            asked += from.description() + " to " + until.description();
            return { "/old", "/new" };
        }
        std::string asked;

    private:
        const Installed<MetadataIndex> installed_ { *this };
    };

    // A zone whose clocks change once.
    class ChangingZone final : public TimeZone {
    public:
        ChangingZone(double changedAt, int before, int after)
            : changedAt_(changedAt),
              before_(before),
              after_(after) { }
        int secondsFromGMT(Date at) const override { return at < Date::sinceUnixEpoch(changedAt_) ? before_ : after_; }

    private:
        double changedAt_;
        int before_;
        int after_;
        const Installed<const TimeZone> installed_ { *this };
    };

    const std::string kQuery = "( InRange (kMDItemLastUsedDate ,          $time.iso(2024-03-05 14:07:09 +0000) ,"
                               "          $time.today(+1d)    ))";

    struct DayEnd {
        const char* name;
        double changedAt;
        int before;
        int after;
        double now;
        const char* end;
    };

    TEST(MDQuery, AsksForTheTimeUntilTomorrowByTheCalendar)
    {
        RecordingIndex index;
        for (const DayEnd& c : {
                 DayEnd { "before a day of 23 hours", 1711846800, 3600, 7200, 1711828800, "2024-03-30 23:00:00" },
                 DayEnd { "in a day of 23 hours", 1711846800, 3600, 7200, 1711800000, "2024-03-30 23:00:00" },
                 DayEnd { "after the change", 1711846800, 3600, 7200, 1711890000, "2024-03-31 22:00:00" },
                 // Santiago, 2024-09-08: 23:59:59 is followed by 01:00:00.
                 DayEnd { "before a day that begins at 01:00", 1725768000, -14400, -10800, 1725750000,
                          "2024-09-08 04:00:00" },
                 DayEnd { "in a day that began at 01:00", 1725768000, -14400, -10800, 1725768000,
                          "2024-09-09 03:00:00" },
                 // Santiago, 2024-04-06: 23:59:59 is followed by 23:00:00 of the same day.
                 DayEnd { "with a last hour that comes twice", 1712458800, -10800, -14400, 1712440000,
                          "2024-04-07 04:00:00" },
             }) {
            ManualClock clock(Date::sinceUnixEpoch(c.now));
            const ChangingZone zone(c.changedAt, c.before, c.after);
            index.asked.clear();
            EXPECT_TRUE(MDQuery(kQuery, { kMDItemLastUsedDate }).execute());
            EXPECT_EQ(index.asked, "2024-03-05 14:07:09 +0000 to " + std::string(c.end) + " +0000") << c.name;
        }
    }

    TEST(MDQuery, GivesThePathsOldestFirst)
    {
        const RecordingIndex index;
        const ManualClock clock;
        MDQuery query(kQuery, { kMDItemLastUsedDate });
        EXPECT_TRUE(query.execute());
        ASSERT_EQ(query.resultCount(), 2U);
        EXPECT_EQ(query.result(0).copyAttribute(kMDItemPath), "/old");
        EXPECT_FALSE(query.result(0).copyAttribute("kMDItemTitle"));
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
