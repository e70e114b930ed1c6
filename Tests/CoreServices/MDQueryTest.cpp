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

    // Central European time around the end of March 2024, when its clocks went forward.
    class CentralEurope final : public TimeZone {
    public:
        int secondsFromGMT(Date at) const override
        {
            return at < Date::sinceUnixEpoch(1711846800) ? 3600 : 7200; // 2024-03-31 01:00 UTC
        }

    private:
        const Installed<const TimeZone> installed_ { *this };
    };

    const std::string kQuery = "( InRange (kMDItemLastUsedDate ,          $time.iso(2024-03-05 14:07:09 +0000) ,"
                               "          $time.today(+1d)    ))";

    TEST(MDQuery, AsksForTheTimeUntilTomorrowByTheCalendar)
    {
        // 2024-03-30 20:00 UTC is 21:00 there, and the next day has 23 hours.
        ManualClock clock(Date::sinceUnixEpoch(1711828800));
        const CentralEurope zone;
        RecordingIndex index;
        MDQuery query(kQuery, { kMDItemLastUsedDate });
        EXPECT_TRUE(query.execute());
        EXPECT_EQ(index.asked, "2024-03-05 14:07:09 +0000 to 2024-03-30 23:00:00 +0000");
        ASSERT_EQ(query.resultCount(), 2U);
        EXPECT_EQ(query.result(0).copyAttribute(kMDItemPath), "/old");
        EXPECT_FALSE(query.result(0).copyAttribute("kMDItemTitle"));

        index.asked.clear();
        clock.setNow(Date::sinceUnixEpoch(1711890000)); // 2024-03-31 13:00 UTC
        EXPECT_TRUE(query.execute());
        EXPECT_EQ(index.asked, "2024-03-05 14:07:09 +0000 to 2024-03-31 22:00:00 +0000");
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
