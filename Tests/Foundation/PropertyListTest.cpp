#include "PropertyList.h"

#include <gtest/gtest.h>
#include <limits>

using namespace quillbox;

namespace {

Data bytesOf(std::string_view text)
{
    return { text.begin(), text.end() };
}

Data fromHex(std::string_view hex)
{
    Data bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16)));
    return bytes;
}

// A value of every kind, with the numbers and dates that readers get wrong.
PropertyList everything()
{
    return PropertyList::Dictionary {
        { "a", PropertyList::Array { std::int64_t { 1 }, 2.5, true, "x", Data { 0, 255 } } },
        { "big", std::uint64_t { 9223372036854775813U } },
        { "empty", Data {} },
        { "long", std::string(20, 'k') },
        { "max", std::numeric_limits<std::uint64_t>::max() },
        { "min", std::numeric_limits<std::int64_t>::min() },
        { "minus", std::int64_t { -1 } },
        { "sizes",
          PropertyList::Array { std::int64_t { 127 }, std::int64_t { 128 }, std::int64_t { 255 }, std::int64_t { 256 },
                                std::int64_t { 65535 }, std::int64_t { 65536 }, std::int64_t { 4294967295 },
                                std::int64_t { 4294967296 }, std::numeric_limits<std::int64_t>::max() } },
        { "wide", "\u00e9\U0001f600z" },
        { "year1", Date { -63113903999.75 } },
        { "year2100", Date { 3137227200.5 } },
    };
}

// everything(), as Python's plistlib writes it.
const Data kPythonsBytes =
    fromHex("62706c6973743030db0102030405060708090a0b0c1213141516171822232451615362696755656d707479546c6f6e67536d"
            "6178536d696e556d696e75735573697a65735477696465557965617231587965617232313030a50d0e0f1011100123400400"
            "00000000000951784200ff1400000000000000008000000000000005405f10146b6b6b6b6b6b6b6b6b6b6b6b6b6b6b6b6b6b"
            "6b6b140000000000000000ffffffffffffffff13800000000000000013ffffffffffffffffa9191a1b1c1d1e1f2021107f10"
            "8010ff11010011ffff120001000012ffffffff130000000100000000137fffffffffffffff6400e9d83dde00007a33c22d63"
            "c37eff80003341e75fc9381000000008001f00210025002b003000340038003e00440049004f0058005e00600069006a006c"
            "006f00800081009800a900b200bb00c500c700c900cb00ce00d100d600db00e400ed00f600ff000000000000020100000000"
            "0000002500000000000000000000000000000108");

// A binary list of the given objects with one-byte offsets and references; the first is the root.
Data listOfObjects(const std::vector<std::string>& objects)
{
    Data bytes = bytesOf("bplist00");
    Data offsets;
    for (const std::string& object : objects) {
        offsets.push_back(static_cast<std::uint8_t>(bytes.size()));
        bytes.insert(bytes.end(), object.begin(), object.end());
    }
    const auto table = static_cast<std::uint8_t>(bytes.size());
    bytes.insert(bytes.end(), offsets.begin(), offsets.end());
    bytes.insert(bytes.end(), { 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(objects.size()),
                                0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, table });
    return bytes;
}

TEST(PropertyList, ReadsAndWritesWhatPythonDoes)
{
    EXPECT_EQ(*PropertyList::fromData(kPythonsBytes), everything());
    EXPECT_EQ(*everything().binaryData(), kPythonsBytes);
}

TEST(PropertyList, ComesBackWhole)
{
    PropertyList::Dictionary larger { { "all", everything() }, { std::string("nul\0key", 7), std::string("a\0b", 3) } };
    PropertyList::Array many;
    for (std::int64_t i = 0; i < 70000; ++i)
        many.emplace_back(i % 1000);
    larger["many"] = many;
    for (const PropertyList& list : { everything(), PropertyList(larger), PropertyList("only a text"), PropertyList(),
                                      PropertyList(PropertyList::Array {}), PropertyList("\uffff\U0010ffff") })
        EXPECT_EQ(*PropertyList::fromData(*list.binaryData()), list);
}

TEST(PropertyList, NumbersKeepTheirType)
{
    EXPECT_FALSE(PropertyList(std::int64_t { -1 }).asUInt64());
    EXPECT_FALSE(PropertyList(std::uint64_t { 1 } << 63U).asInt64());
    EXPECT_FALSE(PropertyList(true).asInt64());
    EXPECT_FALSE(PropertyList(1.0).asInt64());
    // Four-byte reals, and what sixteen bytes can hold of a signed number.
    EXPECT_EQ(*PropertyList::fromData(listOfObjects({ "\x22\x3f\xc0" + std::string(2, '\0') })), PropertyList(1.5));
    EXPECT_EQ(*PropertyList::fromData(listOfObjects({ "\x14" + std::string(16, '\xff') })),
              PropertyList(std::int64_t { -1 }));
}

TEST(PropertyList, ReadsAndRefusesValuesInXML)
{
    const std::pair<const char*, std::optional<PropertyList>> cases[] = {
        { "<integer> +0x7F </integer>", PropertyList(std::int64_t { 127 }) },
        { "<integer>9223372036854775813</integer>", PropertyList(std::uint64_t { 9223372036854775813U }) },
        { "<integer>-9223372036854775808</integer>", PropertyList(std::numeric_limits<std::int64_t>::min()) },
        { "<integer>-9223372036854775809</integer>", std::nullopt },
        { "<integer>18446744073709551616</integer>", std::nullopt },
        { "<integer>1 2</integer>", std::nullopt },
        { "<integer/>", std::nullopt },
        { "<real>+1e3</real>", PropertyList(1000.0) },
        { "<real>-inf</real>", PropertyList(-std::numeric_limits<double>::infinity()) },
        { "<real>1,5</real>", std::nullopt },
        { "<date>2100-06-01T12:00:00Z</date>", PropertyList(Date { 3137227200 }) },
        { "<date>0001-01-01T00:00:00Z</date>", PropertyList(Date { -63113904000 }) },
        { "<date>-0001-03-01T00:00:60Z</date>", PropertyList(Date { -63171964740 }) },
        { "<date>2001-02-29T00:00:00Z</date>", std::nullopt },
        { "<date>2001-01-01T24:00:00Z</date>", std::nullopt },
        { "<date>2001-01-01T00:00:00</date>", std::nullopt },
        { "<data> AQ\n== </data>", PropertyList(Data { 1 }) },
        { "<data/>", PropertyList(Data {}) },
        { "<data>A===</data>", std::nullopt },
        { "<data>AQ=</data>", std::nullopt },
        { "<data>AQ==AQ==</data>", std::nullopt },
        { "<string> \t</string>", PropertyList(" \t") },
        { "<string>a &amp; \u00e9\U0001f600</string>", PropertyList("a & \u00e9\U0001f600") },
        { "<string>a<!-- b --><![CDATA[<c>]]></string>", PropertyList("a<c>") },
        { "<string>a<true/></string>", std::nullopt },
        { "<string>&#xD800;</string>", std::nullopt },
        { "<true>yes</true>", std::nullopt },
        { "<array><true/><real>0.5</real></array>", PropertyList(PropertyList::Array { true, 0.5 }) },
        { "<dict> <key> </key> <false/> </dict>", PropertyList(PropertyList::Dictionary { { " ", false } }) },
        { "<dict><key>a</key></dict>", std::nullopt },
        { "<dict><true/><key>a</key></dict>", std::nullopt },
        { "<array>text</array>", std::nullopt },
        { "<set/>", std::nullopt },
        { "<true/><true/>", std::nullopt },
        { "", std::nullopt },
    };
    for (const auto& [text, value] : cases) {
        const auto read = PropertyList::fromData(
            bytesOf("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">"
                    + std::string(text) + "</plist>"));
        EXPECT_EQ(read ? std::optional(*read) : std::nullopt, value) << text;
    }
}

TEST(PropertyList, RefusesWhatIsNone)
{
    std::string deepXML = "<plist version=\"1.0\">";
    for (const char* mark : { "<array>", "</array>" }) {
        for (int i = 0; i < 200000; ++i)
            deepXML += mark;
    }
    deepXML += "</plist>";
    // Nine lists, each fourteen times in the one before: fourteen to the ninth texts when written out.
    std::vector<std::string> growing;
    for (int i = 1; i <= 9; ++i)
        growing.push_back("\xae" + std::string(14, static_cast<char>(i)));
    growing.emplace_back("\x51x");
    const std::pair<const char*, Data> cases[] = {
        { "nothing", {} },
        { "text", bytesOf("hello") },
        { "header alone", bytesOf("bplist00") },
        { "cut XML", bytesOf("<plist version=\"1.0\"><dict><key>a</key>") },
        { "other XML", bytesOf("<html><body/></html>") },
        { "broken UTF-8", bytesOf("<plist version=\"1.0\"><string>\xff</string></plist>") },
        { "deep XML", bytesOf(deepXML) },
        { "a list within itself", listOfObjects({ std::string("\xa1\0", 2) }) },
        { "two within each other", listOfObjects({ "\xa1\x01", std::string("\xa1\0", 2) }) },
        { "an object that is not there", listOfObjects({ "\xa1\x09" }) },
        { "a count of all addresses", listOfObjects({ "\xaf\x13" + std::string(8, '\xff') }) },
        { "a negative count", listOfObjects({ "\x5f\x13\xff" + std::string(7, '\0') }) },
        { "a key that is a number", listOfObjects({ "\xd1\x01\x01", "\x10\x05" }) },
        { "half a surrogate pair", listOfObjects({ std::string("\x61\xd8\x3d", 3) }) },
        { "an integer of 2^64", listOfObjects({ "\x14" + std::string(7, '\0') + "\x01" + std::string(8, '\0') }) },
        { "shared values that grow without bound", listOfObjects(growing) },
        { "a null", listOfObjects({ std::string("\0", 1) }) },
    };
    for (const auto& [name, bytes] : cases) {
        const Result<PropertyList> read = PropertyList::fromData(bytes);
        ASSERT_FALSE(read) << name;
        EXPECT_FALSE(read.error().what.empty()) << name;
    }
}

TEST(PropertyList, RefusesToWriteWhatNobodyCouldRead)
{
    EXPECT_FALSE(PropertyList("\xff").binaryData());
    EXPECT_FALSE(PropertyList(PropertyList::Dictionary { { "\xff", true } }).binaryData());
    PropertyList deep;
    for (int i = 0; i < 300; ++i)
        deep = PropertyList(PropertyList::Array { std::move(deep) });
    EXPECT_FALSE(deep.binaryData());
    EXPECT_FALSE(PropertyList(PropertyList::Array(1100000, true)).binaryData());
}

// Of a list that is cut off anywhere, or has another byte anywhere, comes a value that can be written again or an
// error.
TEST(PropertyList, OutlivesDamage)
{
    const Data xml =
        bytesOf("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key><array><integer>-12</integer>"
                "<data>AAEC</data><date>2001-01-01T00:00:00Z</date><string>&lt;</string></array></dict></plist>");
    int readable = 0;
    for (const Data& whole : { kPythonsBytes, xml }) {
        for (std::size_t i = 0; i < whole.size(); ++i) {
            for (const int change : { 0, 0x01, 0x0f, 0x10, 0x80, 0xff }) {
                Data damaged = whole;
                damaged[i] ^= static_cast<std::uint8_t>(change);
                if (change == 0)
                    damaged.resize(i);
                const Result<PropertyList> read = PropertyList::fromData(damaged);
                EXPECT_TRUE(!read || read->binaryData()) << "read, but can't be written";
                readable += read ? 1 : 0;
            }
        }
    }
    EXPECT_GT(readable, 500);
}

} // namespace
