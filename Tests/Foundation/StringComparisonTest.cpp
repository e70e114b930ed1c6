#include "StringComparison.h"

#include "Unicode.h"

#include <gtest/gtest.h>
#include <sstream>
#include <tuple>

using namespace quillbox;

namespace {

TEST(NameOrder, IsThatOfTheKeys)
{
    std::istringstream words(
        " / 0 99999 : a a000b a1 a9z a10a ab cafe caf\u00e9 \u00e99 \u00e910 file file1 file9 file10 "
        "z \u0430 \u0661\u0660 \u0669");
    std::vector<std::string> ascending(1);
    for (std::string word; words >> word;)
        ascending.push_back(word);
    ASSERT_EQ(ascending.size(), 23U);
    for (auto after = ascending.begin(); after != ascending.end(); ++after) {
        for (auto before = ascending.begin(); before != after; ++before)
            EXPECT_LT(nameSortKey(*before), nameSortKey(*after)) << *before << ' ' << *after;
    }
    for (const std::size_t digits : { 40U, 253U, 254U, 255U, 300U }) {
        const std::string nines(digits, '9');
        EXPECT_LT(nameSortKey(nines), nameSortKey("1" + std::string(digits, '0'))) << digits;
        EXPECT_LT(nameSortKey(nines + "1"), nameSortKey(nines + "2")) << digits;
    }
    for (const auto& [name, one, other] : {
             std::tuple("case", "apple", "Apple"),
             { "leading zeros", "img007", "img7" },
             { "zeros", "a0", "a000" },
             { "composed and decomposed", "caf\u00e9", "cafe\u0301" },
             { "folded and decomposed", "CAF\u00c9", "cafe\u0301" },
             { "sharp S", "Stra\u00dfe", "STRASSE" },
             { "final sigma", "\u03a3", "\u03c2" },
             { "marks in either order", "a\u0323\u0302", "a\u0302\u0323" },
             { "iota below and acute", "\u03b1\u0345\u0301", "\u1fb4" },
             { "Hangul syllable", "\ud55c", "\u1112\u1161\u11ab" },
             { "broken bytes", "a\xff", "a\ufffd" },
         })
        EXPECT_EQ(nameSortKey(one), nameSortKey(other)) << name;
}

TEST(CanonicalEquality, KeepsCase)
{
    EXPECT_TRUE(isCanonicallyEqual("\u00e9", "e\u0301"));
    EXPECT_TRUE(isCanonicallyEqual("\u212b", "\u00c5"));
    EXPECT_FALSE(isCanonicallyEqual("\u00e9", "E\u0301"));
    EXPECT_FALSE(isCanonicallyEqual("\ufb01", "fi")) << "compatibility is not equivalence";
    EXPECT_FALSE(isCanonicallyEqual("e", "\u00e9"));
    EXPECT_FALSE(isCanonicallyEqual("\xff", "\xfe")) << "different bytes are different names";
}

TEST(Unicode, ReplacesEveryRunOfBrokenBytes)
{
    const std::pair<std::string, std::string> cases[] = {
        { "\u00e9\U0001f600", "\u00e9\U0001f600" },
        { "a\xff\xfe\x80z", "a\ufffdz" },
        { "\xe2\x82", "\ufffd" },
        { "\xc0\xaf", "\ufffd" },
        { "\xed\xa0\x80x", "\ufffdx" },
        { "\xf4\x90\x80\x80", "\ufffd" },
        { "\xf0\x80\x80\x80", "\ufffd" },
        { "eightbytes\xe9long enough", "eightbytes\ufffdlong enough" },
        { std::string("a\0b", 3), std::string("a\0b", 3) },
    };
    for (const auto& [bytes, shown] : cases) {
        EXPECT_EQ(unicode::displayText(bytes), shown);
        EXPECT_EQ(unicode::isValidUTF8(bytes), bytes == shown);
    }
}

} // namespace
