#include "MainMenuItem.h"
#include "Debug.h"
#include "GlobalVars.h"
#include "MainMenuItemSaver.h"
#include "PropertyList.h"
#include "World.h"

#include <gtest/gtest.h>

#include <sstream>

namespace quillbox {

namespace {

    using Type = MenuItemType;

    TEST(MenuOptionFlags, AreStoredAsTheirBits)
    {
        EXPECT_EQ(menuOptionFlagsSv::showHiddenItems.rawValue(), 2U);
        EXPECT_EQ(menuOptionFlagsSv::sortByDate.rawValue(), 8U);
        EXPECT_EQ(menuOptionFlagsSv::ignoreArticles.rawValue(), 16U);
    }

    TEST(MainMenuItem, ANewItemHasWhatItsKindAsksFor)
    {
        const World world;
        EXPECT_EQ(MainMenuItem(Type::separator).displayString, GlobalVars::separatorDisplayString());
        EXPECT_EQ(MainMenuItem(Type::systemSettings).displayString, "System Settings");
        EXPECT_EQ(MainMenuItem(Type::systemSettings).optionFlagsDv, menuOptionFlagsDv::prefPaneDisplayNames);

        const MainMenuItem recent(Type::recentItemsDocs);
        EXPECT_EQ(recent.noRecentItemsOlderThan, Date::now().addingSeconds(-31'536'000));
        EXPECT_EQ(recent.maxNumberOfRecentItems, 10);

        const auto label = item(Type::plaintext, "My label", MenuOptionFlagsSv(32));
        EXPECT_EQ(label->displayString, "My label");
        EXPECT_FALSE(label->noRecentItemsOlderThan);
        EXPECT_EQ(label->maxNumberOfRecentItems, 0);
        EXPECT_EQ(label->optionFlagsSv.rawValue(), 32U);
    }

    MainMenuItemSaver record(const std::string& type)
    {
        MainMenuItemSaver result;
        result.menuItemType = type;
        result.displayString = "saved title";
        result.unixPath = "/saved/path";
        result.bookmarkData = { 1, 2, 3 };
        result.optionFlags = (std::uint64_t { 1 } << 63) + 6;
        result.noRecentItemsOlderThan = Date { 1000 };
        result.maxNumberOfRecentItems = -7;
        return result;
    }

    TEST(MainMenuItem, ARecordGivesItsKindOnlyWhatItUses)
    {
        const World world;
        EXPECT_EQ(MainMenuItem::fromRecord(record("fixedAppPreferences"))->displayString, "Quillbox Preferences...");
        EXPECT_EQ(MainMenuItem::fromRecord(record("separator"))->displayString, GlobalVars::separatorDisplayString());

        const auto settings = MainMenuItem::fromRecord(record("systemPreferences"));
        EXPECT_EQ(settings->menuItemType, Type::systemSettings) << "older programs called it so";
        EXPECT_EQ(settings->displayString, "saved title");
        EXPECT_EQ(settings->optionFlagsDv.rawValue(), 1U);

        const auto label = MainMenuItem::fromRecord(record("plaintext"));
        EXPECT_FALSE(label->unixPath || label->bookmarkDataRaw || label->noRecentItemsOlderThan);
        EXPECT_EQ(label->maxNumberOfRecentItems, 0);
        EXPECT_EQ(label->optionFlagsSv.rawValue(), (std::uint64_t { 1 } << 63) + 6);

        const auto recent = MainMenuItem::fromRecord(record("recentItemsApps"));
        EXPECT_EQ(recent->noRecentItemsOlderThan, Date { 1000 });
        EXPECT_EQ(recent->maxNumberOfRecentItems, -7);

        const auto picked = MainMenuItem::fromRecord(record("arbitraryPath"));
        EXPECT_EQ(picked->unixPath, "/saved/path");
        EXPECT_EQ(picked->bookmarkDataRaw, (Data { 1, 2, 3 }));
        EXPECT_FALSE(picked->fileURL);
        EXPECT_TRUE(Debug::errorLog().empty()) << "nothing lies at the path, so nothing is reported";
    }

    TEST(MainMenuItem, EveryKindIsStoredByItsName)
    {
        const World world;
        int kind = 0;
        for (const char* name :
             { "fixedAppPreferences", "separator", "systemSettings", "systemApplicationsDirectory", "plaintext",
               "arbitraryPath", "recentItems", "recentItemsApps", "recentItemsDocs", "userHomeDirectory",
               "userDesktopDirectory", "userDocumentsDirectory", "userDownloadsDirectory", "other" }) {
            const auto item = MainMenuItem::fromRecord(record(name));
            ASSERT_TRUE(item) << name;
            EXPECT_EQ(item->menuItemType, static_cast<Type>(kind++)) << name;
            EXPECT_EQ(MainMenuItemSaver(*item).menuItemType, name);
        }
    }

    TEST(MainMenuItemSaver, IsStoredUnderTheseKeys)
    {
        const std::vector records { record("plaintext") };
        const Data bytes = *MainMenuItemSaver::encodeList(records);
        EXPECT_EQ(*PropertyList::fromData(bytes),
                  PropertyList(PropertyList::Array { PropertyList::Dictionary {
                      { "menuItemType", "plaintext" },
                      { "displayString", "saved title" },
                      { "unixPath", "/saved/path" },
                      { "bookmarkData", Data { 1, 2, 3 } },
                      { "optionFlags", (std::uint64_t { 1 } << 63) + 6 },
                      { "noRecentItemsOlderThan", Date { 1000 } },
                      { "maxNumberOfRecentItems", std::int64_t { -7 } },
                  } }));
        EXPECT_EQ(*MainMenuItemSaver::decodeList(bytes), records);
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

    TEST(MainMenuItemSaver, AListWithOneBadRecordIsNotDecoded)
    {
        const Data good = *MainMenuItemSaver::encodeList({ record("plaintext"), record("separator") });
        ASSERT_TRUE(MainMenuItemSaver::decodeList(good));
        struct Case {
            const char* key;
            // None: the key is missing.
            std::optional<PropertyList> value;
        };
        for (const Case& c : {
                 Case { "optionFlags", {} },
                 Case { "optionFlags", std::int64_t { -1 } },
                 Case { "maxNumberOfRecentItems", 10.0 },
                 Case { "maxNumberOfRecentItems", true },
                 Case { "maxNumberOfRecentItems", std::uint64_t { 1 } << 63 },
                 Case { "noRecentItemsOlderThan", "2024" },
                 Case { "bookmarkData", "" },
                 Case { "unixPath", Data {} },
             }) {
            auto list = PropertyList::fromData(good);
            auto& fields = *list->as<PropertyList::Array>()->at(1).as<PropertyList::Dictionary>();
            fields.erase(c.key);
            if (c.value)
                fields.emplace(c.key, *c.value);
            EXPECT_FALSE(MainMenuItemSaver::decodeList(*list->binaryData())) << c.key;
        }
    }

    TEST(MainMenuItemSaver_v1, UpgradesItsThreeSwitchesAndKeepsTheRest)
    {
        struct Case {
            bool showAsEnabled, showHiddenFiles, showPathAsTooltip;
            std::uint64_t flags;
        };
        for (const Case& c : { Case { true, false, false, 0 }, Case { false, false, false, 1 },
                               Case { true, true, false, 2 }, Case { true, false, true, 4 } }) {
            const PropertyList::Dictionary old {
                { "menuItemType", "plaintext" },
                { "displayString", "saved title" },
                { "unixPath", "/saved/path" },
                { "bookmarkData", Data { 1, 2, 3 } },
                { "showAsEnabled", c.showAsEnabled },
                { "showHiddenFiles", c.showHiddenFiles },
                { "showPathAsTooltip", c.showPathAsTooltip },
                { "noRecentItemsOlderThan", Date { 1000 } },
                { "maxNumberOfRecentItems", std::int64_t { -7 } },
            };
            const auto read = MainMenuItemSaver_v1::decodeList(*PropertyList(PropertyList::Array { old }).binaryData());
            MainMenuItemSaver wanted = record("plaintext");
            wanted.optionFlags = c.flags;
            EXPECT_EQ(read->at(0).upgraded(), wanted);
        }
    }

    TEST(Dump, OfTheLiveListIsExact)
    {
        const World world;
        const auto recent = item(Type::recentItems, "Recent \"x\"", MenuOptionFlagsSv(0x1234567890U));
        recent->noRecentItemsOlderThan = Date { 0.5 };
        MainMenuItem::actualMenuItems() = { pickedItem("/x/../a b"), recent };
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
                  "displayString     = \"Recent \"x\"\"\n"
                  "    type          = .recentItems\n"
                  "    unixPath      = nil\n"
                  "    URL           = nil\n"
                  "    newerThan     = Optional(2001-01-01 00:00:00 +0000)\n"
                  "    maxNumber     = 10\n"
                  "    optionFlagsSv = 0x1234567890\n"
                  "    optionFlagsDv = 0x00000000\n\n");
    }

    TEST(Dump, OfTheBuiltItemsCountsThoseThatAreGone)
    {
        const World world;
        const auto kept = std::make_shared<NSMenuItemPlus>("kept");
        Debug::dynamicMenuItems() = { { kept }, { std::make_shared<NSMenuItemPlus>("gone") } };
        std::ostringstream out;
        Debug::dumpDynamicMenuItems(out);
        EXPECT_EQ(out.str(), "contents of Debug.dynamicMenuItems[] :\n  \"kept\"\n2 elements, 1 are non-nil\n\n");
    }

    TEST(Debug, KeepsTheTwentyNewestReports)
    {
        const World world;
        for (int number = 1; number <= 25; ++number)
            Debug::addErrorLogEntry("T", "f()", "/a/b/File.cpp", 7, number == 25, std::to_string(number));
        ASSERT_EQ(Debug::errorLog().size(), 20U);
        using Run = AttributedString::Run;
        EXPECT_EQ(Debug::errorLog().front().runs(),
                  (std::vector { Run { "\U0001F6D1 ", {} }, Run { "T . f()", GlobalVars::boldTextAttributes() },
                                 Run { "\n\nFile.cpp:7\n\n6", {} } }));
        EXPECT_EQ(Debug::errorLog().back().string(), "\u26A0\uFE0F T . f()\n\nFile.cpp:7\n\n25");
    }

} // namespace

} // namespace quillbox
