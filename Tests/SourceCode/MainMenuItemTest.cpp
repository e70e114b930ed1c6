#include "MainMenuItem.h"
#include "Debug.h"
#include "GlobalVars.h"
#include "MainMenuItemSaver.h"
#include "ManageDefaults.h"
#include "PropertyList.h"
#include "World.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

namespace quillbox {

namespace {

    using Type = MenuItemType;

    static_assert(MenuOptionFlagsSv { menuOptionFlagsSv::sortByDate, menuOptionFlagsSv::ignoreArticles }.rawValue()
                  == 24);
    static_assert(menuOptionFlagsSv::showHiddenItems.rawValue() == 2);
    static_assert(menuOptionFlagsSv::sortByDate.rawValue() == 8);

    std::string separatorLine()
    {
        std::string line;
        for (int count = 0; count < 35; ++count)
            line += "\xE2\x8E\xAF";
        return line;
    }

    TEST(MenuItemType, HasFourteenNamesAndNoOther)
    {
        for (std::size_t index = 0; index < kMenuItemTypeCount; ++index) {
            const auto type = static_cast<Type>(index);
            EXPECT_EQ(menuItemType(rawValue(type)), type);
            ASSERT_TRUE(MainMenuItem::menuItemInfo(type));
        }
        for (const char* text : { "", "systemPreferences", "Separator", "separator ", "unknown" })
            EXPECT_FALSE(menuItemType(text)) << text;
    }

    TEST(MainMenuItem, ANewItemHasWhatItsKindAsksFor)
    {
        const World world;
        const MainMenuItem separator(Type::separator);
        EXPECT_EQ(separator.displayString, separatorLine());

        const MainMenuItem settings(Type::systemSettings);
        EXPECT_EQ(settings.displayString, "System Settings");
        EXPECT_EQ(settings.optionFlagsDv, menuOptionFlagsDv::prefPaneDisplayNames);

        const MainMenuItem recent(Type::recentItemsDocs);
        EXPECT_EQ(recent.noRecentItemsOlderThan, Date::now().addingSeconds(-31'536'000));
        EXPECT_EQ(recent.maxNumberOfRecentItems, 10);

        const MainMenuItem label(Type::plaintext, "My label", {}, {}, MenuOptionFlagsSv(32));
        EXPECT_EQ(label.displayString, "My label");
        EXPECT_FALSE(label.noRecentItemsOlderThan);
        EXPECT_EQ(label.maxNumberOfRecentItems, 0);
        EXPECT_EQ(MainMenuItemSaver(label).optionFlags, 32U);
    }

    TEST(GlobalVars, TheSettingsApplicationIsNamedByTheSystemsVersion)
    {
        EXPECT_EQ(GlobalVars::systemSettingsAppName({ 12, 7, 9 }), "System Preferences");
        EXPECT_EQ(GlobalVars::systemSettingsAppName({ 13, 0, 0 }), "System Settings");
    }

    MainMenuItemSaver record(const std::string& type)
    {
        MainMenuItemSaver result;
        result.menuItemType = type;
        result.displayString = "saved title";
        result.unixPath = "/saved/path";
        result.bookmarkData = { 1, 2, 3 };
        result.optionFlags = 6;
        result.noRecentItemsOlderThan = Date { 1000 };
        result.maxNumberOfRecentItems = 7;
        return result;
    }

    TEST(MainMenuItem, ARecordGivesItsKindOnlyWhatItUses)
    {
        const World world;
        EXPECT_EQ(MainMenuItem::fromRecord(record("fixedAppPreferences"))->displayString, "Quillbox Preferences...");
        EXPECT_EQ(MainMenuItem::fromRecord(record("separator"))->displayString, separatorLine());

        const auto settings = MainMenuItem::fromRecord(record("systemPreferences"));
        EXPECT_EQ(settings->menuItemType, Type::systemSettings);
        EXPECT_EQ(settings->displayString, "saved title");
        EXPECT_EQ(settings->optionFlagsDv.rawValue(), 1U);

        const auto label = MainMenuItem::fromRecord(record("plaintext"));
        EXPECT_FALSE(label->unixPath || label->bookmarkDataRaw || label->noRecentItemsOlderThan);
        EXPECT_EQ(label->maxNumberOfRecentItems, 0);
        EXPECT_EQ(label->optionFlagsSv.rawValue(), 6U);

        const auto recent = MainMenuItem::fromRecord(record("recentItemsApps"));
        EXPECT_EQ(recent->noRecentItemsOlderThan, Date { 1000 });
        EXPECT_EQ(recent->maxNumberOfRecentItems, 7);

        const auto picked = MainMenuItem::fromRecord(record("arbitraryPath"));
        EXPECT_EQ(picked->unixPath, "/saved/path");
        EXPECT_EQ(picked->bookmarkDataRaw, (Data { 1, 2, 3 }));
        EXPECT_FALSE(picked->fileURL);
        EXPECT_TRUE(Debug::errorLog().empty()) << "nothing lies at the path, so nothing is reported";
    }

    TEST(MainMenuItem, AnUnknownKindIsReportedByTheRecordsOwnName)
    {
        const World world;
        EXPECT_FALSE(MainMenuItem::fromRecord(record("SystemSettings")));
        ASSERT_EQ(Debug::errorLog().size(), 1U);
        const auto& runs = Debug::errorLog()[0].runs();
        ASSERT_EQ(runs.size(), 3U);
        EXPECT_EQ(runs[0], (AttributedString::Run { "\U0001F6D1 ", {} }));
        EXPECT_EQ(runs[1], (AttributedString::Run { "MainMenuItem . init(_:)", GlobalVars::boldTextAttributes() }));
        EXPECT_TRUE(runs[2].text.starts_with("\n\nMainMenuItem.cpp:")) << runs[2].text;
        EXPECT_EQ(World::loggedMessages()[0], "the input operand had an unknown menuItemType: \"SystemSettings\"");
    }

    TEST(MainMenuItem, ABadBookmarkIsReportedOnlyWhereItsFileIsThere)
    {
        const World world;
        MainMenuItemSaver picked = record("arbitraryPath");
        picked.unixPath = world.files.writeFile("there.txt");
        const auto item = MainMenuItem::fromRecord(picked);
        ASSERT_TRUE(item);
        EXPECT_FALSE(item->fileURL);
        ASSERT_EQ(World::loggedMessages().size(), 1U);
        EXPECT_TRUE(World::loggedMessages()[0].starts_with(
            "menu-item \"saved title\" couldn't convert a MainMenuItemSaver into a MainMenuItem, because\n"));
    }

    TEST(MainMenuItemSaver, KeepsOldBookmarkBytesWhereNoFreshOnesCanBeMade)
    {
        const World world;
        MainMenuItem gone(Type::arbitraryPath, "x", "/gone", URL::fileURLWithPath("/nowhere/gone"));
        gone.bookmarkDataRaw = Data { 9, 8 };
        EXPECT_EQ(MainMenuItemSaver(gone).bookmarkData, (Data { 9, 8 }));
        EXPECT_EQ(MainMenuItemSaver(gone).noRecentItemsOlderThan, Date::now());

        const MainMenuItem bare(Type::arbitraryPath);
        EXPECT_TRUE(MainMenuItemSaver(bare).bookmarkData.empty());
        EXPECT_EQ(MainMenuItemSaver(bare).unixPath, "");

        const std::string odd = world.files.writeFile("odd-\xFF.txt");
        const MainMenuItemSaver saved(*pickedItem(odd));
        EXPECT_EQ(saved.unixPath, world.files.path("odd-\uFFFD.txt"));
        EXPECT_EQ(MainMenuItem::fromRecord(saved)->fileURL->path(), odd) << "the bookmark has the exact bytes";
    }

    struct DecodeCase {
        const char* name;
        std::function<void(PropertyList::Dictionary&)> damage;
    };

    class Decoding : public testing::TestWithParam<DecodeCase> { };

    TEST_P(Decoding, FailsAsAWhole)
    {
        const auto good = MainMenuItemSaver::encodeList({ record("plaintext"), record("separator") });
        ASSERT_TRUE(good);
        ASSERT_TRUE(MainMenuItemSaver::decodeList(*good));
        auto list = PropertyList::fromData(*good);
        GetParam().damage(*list->as<PropertyList::Array>()->at(1).as<PropertyList::Dictionary>());
        EXPECT_FALSE(MainMenuItemSaver::decodeList(*list->binaryData()));
    }

    INSTANTIATE_TEST_SUITE_P(
        Records, Decoding,
        testing::Values(DecodeCase { "missingKey", [](auto& r) { r.erase("optionFlags"); } },
                        DecodeCase { "negativeFlags", [](auto& r) { r["optionFlags"] = std::int64_t { -1 }; } },
                        DecodeCase { "realForInteger", [](auto& r) { r["maxNumberOfRecentItems"] = 10.0; } },
                        DecodeCase { "booleanForInteger", [](auto& r) { r["maxNumberOfRecentItems"] = true; } },
                        DecodeCase { "tooLargeLimit",
                                     [](auto& r) { r["maxNumberOfRecentItems"] = std::uint64_t { 1 } << 63; } },
                        DecodeCase { "textForDate", [](auto& r) { r["noRecentItemsOlderThan"] = "2024"; } },
                        DecodeCase { "textForData", [](auto& r) { r["bookmarkData"] = ""; } },
                        DecodeCase { "dataForText", [](auto& r) { r["unixPath"] = Data {}; } }),
        [](const auto& test) { return std::string(test.param.name); });

    TEST(MainMenuItemSaver_v1, UpgradesItsThreeSwitchesAndKeepsTheRest)
    {
        struct Case {
            bool showAsEnabled, showHiddenFiles, showPathAsTooltip;
            std::uint64_t flags;
        };
        for (const Case& c : { Case { true, false, false, 0 }, Case { false, false, false, 1 },
                               Case { true, true, false, 2 }, Case { false, true, true, 7 } }) {
            const MainMenuItemSaver_v1 old { "plaintext",     "title",           "/path",
                                             { 1, 2 },        c.showHiddenFiles, c.showPathAsTooltip,
                                             c.showAsEnabled, Date { 3 },        -4 };
            MainMenuItemSaver upgraded;
            upgraded.menuItemType = "plaintext";
            upgraded.displayString = "title";
            upgraded.unixPath = "/path";
            upgraded.bookmarkData = { 1, 2 };
            upgraded.optionFlags = c.flags;
            upgraded.noRecentItemsOlderThan = Date { 3 };
            upgraded.maxNumberOfRecentItems = -4;
            EXPECT_EQ(old.upgraded(), upgraded);
        }
    }

    TEST(MainMenuItemSaver, AnOlderRecordKeepsAllItsOtherFields)
    {
        MainMenuItemSaver current = record("recentItems");
        current.optionFlags = menuOptionFlagsSv::showPlaintextAsDisabled.rawValue();
        MainMenuItemSaver_v1 old;
        old.menuItemType = current.menuItemType;
        old.displayString = current.displayString;
        old.unixPath = current.unixPath;
        old.bookmarkData = current.bookmarkData;
        old.noRecentItemsOlderThan = current.noRecentItemsOlderThan;
        old.maxNumberOfRecentItems = current.maxNumberOfRecentItems;
        EXPECT_EQ(old.upgraded(), current);
    }

    TEST(MainMenuItem, WithoutABookmarkAPickedPathIsNotResolved)
    {
        const World world;
        MainMenuItemSaver picked = record("arbitraryPath");
        picked.unixPath = world.files.path();
        picked.bookmarkData.clear();
        EXPECT_FALSE(MainMenuItem::fromRecord(picked)->fileURL);
        EXPECT_TRUE(Debug::errorLog().empty()) << "there was nothing that could fail";
    }

    TEST(Dump, OfTheLiveListIsExact)
    {
        const World world;
        std::ostringstream empty;
        MainMenuItem::dumpActualMenuItems(empty);
        EXPECT_EQ(empty.str(), "contents of MainMenuItem.actualMenuItems[] :\n  (array is empty)\n");

        auto recent = std::make_shared<MainMenuItem>(Type::recentItems, "Recent \"x\"");
        recent->noRecentItemsOlderThan = Date { 0.5 };
        MainMenuItem::actualMenuItems() = {
            std::make_shared<MainMenuItem>(Type::arbitraryPath, "a b", "/x/../a b", URL::fileURLWithPath("/x/../a b")),
            std::make_shared<MainMenuItem>(Type::systemSettings, std::nullopt, std::nullopt, std::nullopt,
                                           MenuOptionFlagsSv(0x1234567890U)),
            recent,
        };
        std::ostringstream out;
        MainMenuItem::dumpActualMenuItems(out);
        EXPECT_EQ(out.str(),
                  "contents of MainMenuItem.actualMenuItems[] :\n\n\n"
                  "displayString     = \"a b\"\n"
                  "    type          = .arbitraryPath\n"
                  "    unixPath      = Optional(\"/x/../a b\")\n"
                  "    URL           = Optional(file:///a%20b)\n"
                  "    newerThan     = nil\n"
                  "    maxNumber     = 0\n"
                  "    optionFlagsSv = 0x00000000\n"
                  "    optionFlagsDv = 0x00000000\n\n"
                  "displayString     = \"System Settings\"\n"
                  "    type          = .systemSettings\n"
                  "    unixPath      = nil\n"
                  "    URL           = nil\n"
                  "    newerThan     = nil\n"
                  "    maxNumber     = 0\n"
                  "    optionFlagsSv = 0x1234567890\n"
                  "    optionFlagsDv = 0x00000001\n\n"
                  "displayString     = \"Recent \"x\"\"\n"
                  "    type          = .recentItems\n"
                  "    unixPath      = nil\n"
                  "    URL           = nil\n"
                  "    newerThan     = Optional(2001-01-01 00:00:00 +0000)\n"
                  "    maxNumber     = 10\n"
                  "    optionFlagsSv = 0x00000000\n"
                  "    optionFlagsDv = 0x00000000\n\n");
    }

    TEST(Debug, KeepsTheTwentyNewestReports)
    {
        const World world;
        for (int number = 1; number <= 25; ++number)
            Debug::addErrorLogEntry("T", "f()", "/a/b/File.cpp", 0, true, std::to_string(number));
        ASSERT_EQ(Debug::errorLog().size(), 20U);
        EXPECT_EQ(Debug::errorLog().front().string(), "\u26A0\uFE0F T . f()\n\nFile.cpp:0\n\n6");
        EXPECT_EQ(World::loggedMessages().back(), "25");
    }

    TEST(Dump, OfTheBuiltItemsCountsThoseThatAreGone)
    {
        const World world;
        std::ostringstream empty;
        Debug::dumpDynamicMenuItems(empty);
        EXPECT_EQ(empty.str(), "contents of Debug.dynamicMenuItems[] :\n  (array is empty)\n");

        const auto first = std::make_shared<NSMenuItemPlus>("first");
        auto gone = std::make_shared<NSMenuItemPlus>("gone");
        const auto last = std::make_shared<NSMenuItemPlus>("last");
        Debug::dynamicMenuItems() = { { first }, { gone }, { last } };
        gone.reset();
        std::ostringstream out;
        Debug::dumpDynamicMenuItems(out);
        EXPECT_EQ(out.str(),
                  "contents of Debug.dynamicMenuItems[] :\n  \"first\"\n  \"last\"\n"
                  "3 elements, 2 are non-nil\n\n");
    }

} // namespace

} // namespace quillbox
