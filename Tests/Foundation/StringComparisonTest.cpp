#include "StringComparison.h"

#include "Unicode.h"

#include <gtest/gtest.h>

using namespace quillbox;

namespace {

struct OrderCase {
    const char* name;
    std::string before;
    std::string after;
    bool isEqual = false;
};

class NameOrder : public testing::TestWithParam<OrderCase> { };

TEST_P(NameOrder, IsThatOfTheKeys)
{
    const OrderCase& c = GetParam();
    if (c.isEqual)
        EXPECT_EQ(nameSortKey(c.before), nameSortKey(c.after));
    else
        EXPECT_LT(nameSortKey(c.before), nameSortKey(c.after));
}

const std::string kFortyDigits(40, '1');

INSTANTIATE_TEST_SUITE_P(
    Names, NameOrder,
    testing::Values(
        OrderCase { "NumbersByValue", "file9", "file10" }, OrderCase { "CaseIsFolded", "apple", "Apple", true },
        OrderCase { "LeadingZerosAreEqual", "img007", "img7", true },
        OrderCase { "ZeroesAreEqual", "a0", "a000", true }, OrderCase { "ZeroBeforeOne", "a000b", "a1" },
        OrderCase { "PrefixFirst", "file", "file1" }, OrderCase { "ShorterNumberInside", "a9z", "a10a" },
        OrderCase { "FortyDigits", kFortyDigits, kFortyDigits + "0" },
        OrderCase { "FortyDigitsByTheLast", kFortyDigits + "1", kFortyDigits + "2" },
        OrderCase { "TwoFiftyFourDigits", std::string(254, '9'), "1" + std::string(254, '0') },
        OrderCase { "ThreeHundredDigits", std::string(300, '9'), "1" + std::string(300, '0') },
        OrderCase { "DigitsBeforeLetters", "a1", "ab" }, OrderCase { "SlashBeforeDigitsBeforeColon", "/", "0" },
        OrderCase { "DigitsBeforeColon", "99999", ":" },
        OrderCase { "ComposedAndDecomposed", "caf\u00e9", "cafe\u0301", true },
        OrderCase { "FoldedAndDecomposed", "CAF\u00c9", "cafe\u0301", true },
        OrderCase { "SharpS", "Stra\u00dfe", "STRASSE", true }, OrderCase { "FinalSigma", "\u03a3", "\u03c2", true },
        OrderCase { "MarksInEitherOrder", "a\u0323\u0302", "a\u0302\u0323", true },
        OrderCase { "IotaBelowAndAcute", "\u03b1\u0345\u0301", "\u1fb4", true },
        OrderCase { "HangulSyllable", "\ud55c", "\u1112\u1161\u11ab", true },
        OrderCase { "AccentAfterPlain", "cafe", "caf\u00e9" },
        OrderCase { "NumbersBehindAccents", "\u00e99", "\u00e910" }, OrderCase { "CyrillicAfterLatin", "z", "\u0430" },
        OrderCase { "ArabicDigitsAreNoNumber", "\u0661\u0660", "\u0669" },
        OrderCase { "BrokenBytesAreReplacements", "a\xff", "a\ufffd", true }, OrderCase { "EmptyFirst", "", "a" }),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(CanonicalEquality, KeepsCase)
{
    EXPECT_TRUE(isCanonicallyEqual("\u00e9", "e\u0301"));
    EXPECT_TRUE(isCanonicallyEqual("\u212b", "\u00c5"));
    EXPECT_FALSE(isCanonicallyEqual("\u00e9", "E\u0301"));
    EXPECT_FALSE(isCanonicallyEqual("a", "A"));
    EXPECT_FALSE(isCanonicallyEqual("\ufb01", "fi")) << "compatibility is not equivalence";
    EXPECT_FALSE(isCanonicallyEqual("e", "\u00e9"));
    EXPECT_TRUE(isCanonicallyEqual("\xff", "\xff"));
    EXPECT_FALSE(isCanonicallyEqual("\xff", "\xfe")) << "different bytes are different names";
}

TEST(Unicode, ReplacesEveryRunOfBrokenBytes)
{
    const std::pair<std::string, std::string> cases[] = {
        { "plain", "plain" },
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

TEST(Unicode, KnowsWhiteSpace)
{
    for (const char32_t c : U"\t\n\v\f\r \u0085\u00a0\u1680\u2003\u2028\u2029\u202f\u205f\u3000")
        EXPECT_TRUE(c == 0 || unicode::isWhitespace(c)) << std::hex << static_cast<unsigned>(c);
    for (const char32_t c : U"a\u200b\u2060\ufeff\u180e")
        EXPECT_FALSE(unicode::isWhitespace(c)) << std::hex << static_cast<unsigned>(c);
}

} // namespace
