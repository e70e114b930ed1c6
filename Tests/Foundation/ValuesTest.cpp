#include "AttributedString.h"
#include "Date.h"
#include "Result.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <limits>

using namespace quillbox;

namespace {

TEST(Date, IsDescribedInUTC)
{
    const std::pair<double, const char*> cases[] = {
        { 0, "2001-01-01 00:00:00 +0000" },
        { -0.25, "2000-12-31 23:59:59 +0000" },
        { -63113904000.5, "0000-12-31 23:59:59 +0000" },
        { -63113904000.0 - 366 * 86400.0 - 1, "-0001-12-31 23:59:59 +0000" },
        { 99705600, "2004-02-29 00:00:00 +0000" },
        { 252423993600, "10000-01-01 00:00:00 +0000" },
        { std::numeric_limits<double>::quiet_NaN(), "no date" },
    };
    for (const auto& [seconds, text] : cases)
        EXPECT_EQ(Date { seconds }.description(), text);
    EXPECT_FALSE(Date { std::numeric_limits<double>::infinity() }.description().empty());
}

TEST(Error, DescribesItselfInOneLine)
{
    EXPECT_EQ(Error::fromErrno(EACCES, "couldn't open", "/a/\xff\nb").description(),
              "couldn't open \"/a/\ufffd\ufffdb\": Permission denied");
    EXPECT_EQ((Error { 0, "no list", {} }).description(), "no list");
    EXPECT_EQ(Error::fromErrno(99999, "x").description(), "x: error 99999");
}

TEST(AttributedString, JoinsNeighboursOfEqualLook)
{
    const TextAttributes bold { FontAttribute { FontAttribute::Role::system, FontAttribute::Weight::bold, 0 }, {} };
    AttributedString text("a");
    text.append("b");
    text.append("", bold);
    text.append("C", bold);
    AttributedString tail("D", bold);
    tail.append("e");
    text.append(tail);
    EXPECT_EQ(text.runs(), (std::vector<AttributedString::Run> { { "ab", {} }, { "CD", bold }, { "e", {} } }));
    text.append(text);
    EXPECT_EQ(text.string(), "abCDeabCDe");
    EXPECT_EQ(text.runs().size(), 5U);
}

} // namespace
