#include "ManageDefaults.h"
#include "AppDelegate.h"
#include "Installed.h"
#include "MainMenuItemSaver.h"
#include "World.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    using Type = MenuItemType;
    using Strings = std::vector<std::string>;

    Strings liveKinds()
    {
        Strings kinds;
        for (const auto& item : MainMenuItem::actualMenuItems())
            kinds.emplace_back(rawValue(item->menuItemType));
        return kinds;
    }

    class ManageDefaultsTest : public WorldTest { };

    TEST_F(ManageDefaultsTest, TheFirstStartShowsTheDefaultsAndWritesNothing)
    {
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(MainMenuItem::actualMenuItems(), ManageDefaults::defaultMenuItems());
        ASSERT_TRUE(world.defaults.synchronize());
        EXPECT_FALSE(FileManager::defaultManager().fileExists(world.defaults.path()));
        EXPECT_TRUE(World::loggedMessages().empty());
    }

    TEST_F(ManageDefaultsTest, WhatAnotherProgramStoresIsLoadedAtTheNextOpeningAndOurOwnChangesAreNot)
    {
        const auto records = [](const char* kind) {
            std::vector<MainMenuItemSaver> list(1);
            list.front().menuItemType = kind;
            return list;
        };
        world.store(records("plaintext"));
        ManageDefaults::loadAllFromDisk();
        UserDefaults other(world.defaults.path());
        other.set(*MainMenuItemSaver::encodeList(records("other")), "UserPickedMenuItems");
        other.set(true, "ShowDebugTab");
        ASSERT_TRUE(other.synchronize());
        ManageDefaults::loadAppMenusFromDisk(true);
        EXPECT_EQ(liveKinds().back(), "other");
        EXPECT_TRUE(ManageDefaults::showDebugTab());
        world.defaults.removeObject("UserPickedMenuItems");
        ASSERT_TRUE(world.defaults.synchronize());
        ManageDefaults::loadAppMenusFromDisk(true);
        EXPECT_EQ(liveKinds().back(), "other");
    }

    TEST_F(ManageDefaultsTest, TheOnePreferencesEntryComesFirstAndUnknownKindsAreSkipped)
    {
        struct Case {
            Strings stored;
            Strings shown;
        };
        for (const Case& c : {
                 Case { {}, { "fixedAppPreferences" } },
                 Case { { "plaintext", "fixedAppPreferences", "other", "fixedAppPreferences" },
                        { "fixedAppPreferences", "plaintext", "other" } },
                 Case { { "hologram", "plaintext", "hologram" }, { "fixedAppPreferences", "plaintext" } },
             }) {
            std::vector<MainMenuItemSaver> records;
            for (const std::string& kind : c.stored)
                records.emplace_back().menuItemType = kind;
            world.store(records);
            ManageDefaults::loadAllFromDisk();
            EXPECT_EQ(liveKinds(), c.shown);
        }
        const std::string each = "the input operand had an unknown menuItemType: \"hologram\"";
        EXPECT_EQ(World::loggedMessages(),
                  (Strings { each, each,
                             "UserPickedMenuItems contained 2 entries that coudn't be turned into actual menu-items"
                             " (so the problem entries were skipped)" }));
        EXPECT_EQ(world.storedRecords().size(), 3U) << "they stay stored";
    }

    TEST_F(ManageDefaultsTest, OlderRecordsAreUpgradedAndSavedAsNewOnes)
    {
        const PropertyList old(
            PropertyList::Array { PropertyList::Dictionary { { "menuItemType", "systemPreferences" },
                                                             { "displayString", "Panels" },
                                                             { "unixPath", "" },
                                                             { "bookmarkData", Data {} },
                                                             { "showAsEnabled", true },
                                                             { "showHiddenFiles", true },
                                                             { "showPathAsTooltip", false },
                                                             { "noRecentItemsOlderThan", Date {} },
                                                             { "maxNumberOfRecentItems", std::int64_t { 0 } } } });
        world.defaults.set(*old.binaryData(), "UserPickedMenuItems");
        world.defaults.set(std::int64_t { 1 }, "saveVersion");
        world.defaults.set(true, "ShowDebugTab");
        ManageDefaults::loadAllFromDisk();
        EXPECT_TRUE(ManageDefaults::showDebugTab());
        EXPECT_EQ(MainMenuItem::actualMenuItems().back()->displayString, "Panels");

        ManageDefaults::saveAllToDisk();
        ASSERT_TRUE(world.defaults.synchronize());
        EXPECT_EQ(world.storedRecords().back().menuItemType, "systemSettings");
        EXPECT_EQ(world.storedRecords().back().optionFlags, menuOptionFlagsSv::showHiddenItems.rawValue());
        EXPECT_EQ(world.defaults.integer("MenuSaveVersion"), 2);
        EXPECT_FALSE(world.defaults.object("saveVersion"));
        EXPECT_EQ(world.defaults.object("ShowDebugTab"), PropertyList(true));
        world.defaults.removeObject("ShowDebugTab");
        ManageDefaults::loadAllFromDisk();
        EXPECT_FALSE(ManageDefaults::showDebugTab());
    }

    TEST(StoredSettings, ThatCantBeUsedAreReportedAndStay)
    {
        const std::string undecodable =
            "PropertyListDecoder.decode() couldn't decode \"UserPickedMenuItems\" (so assuming the default menus)";
        const std::string badVersion = "UserDefaults prefsMenusSaveVersion had an unexpected value: ";
        const Data records = *MainMenuItemSaver::encodeList({ MainMenuItemSaver(*item(Type::plaintext)) });
        struct Case {
            const char* name;
            PropertyList records;
            std::int64_t version;
            std::string message;
            bool keepsList = false;
        };
        for (const Case& c : {
                 Case { "text", "text", 2,
                        "UserDefaults found a non-Data type for UserPickedMenuItems (so assuming the default menus)" },
                 Case { "no property list", Data { 'b', 'p', 'l', 'i', 's', 't' }, 2, undecodable },
                 Case { "empty", Data {}, 2, undecodable },
                 Case { "current records as version 1", records, 1, undecodable },
                 Case { "a later version", records, 3, badVersion + "3", true },
                 Case { "a negative version", records, -1, badVersion + "-1", true },
             }) {
            SCOPED_TRACE(c.name);
            World world;
            const MainMenuItem::List before { item(Type::plaintext, "before") };
            MainMenuItem::actualMenuItems() = before;
            world.defaults.set(c.records, "UserPickedMenuItems");
            world.defaults.set(c.version, "MenuSaveVersion");
            ASSERT_TRUE(world.defaults.synchronize());
            const std::string bytes = world.files.readFile("settings/defaults.plist");
            ManageDefaults::loadAppMenusFromDisk(false);
            EXPECT_EQ(World::loggedMessages(), Strings { c.message });
            EXPECT_EQ(MainMenuItem::actualMenuItems(), c.keepsList ? before : ManageDefaults::defaultMenuItems());
            ASSERT_TRUE(world.defaults.synchronize());
            EXPECT_EQ(world.files.readFile("settings/defaults.plist"), bytes);
        }
    }

    TEST_F(ManageDefaultsTest, WhatCanBeWrittenCanBeRead)
    {
        MainMenuItemSaver large(*item(Type::plaintext, std::string(60, 'x')));
        large.bookmarkData = Data(120, 1);
        const std::vector<MainMenuItemSaver> records(40000, large);
        world.store(records);
        EXPECT_EQ(world.storedRecords(), records);
    }

    TEST_F(ManageDefaultsTest, AListThatStoodInIsReplacedOnceTheSettingsCanBeRead)
    {
        world.store({ MainMenuItemSaver(*item(Type::plaintext)) });
        UserDefaults late(world.defaults.path());
        const Installed<UserDefaults> installed(late);
        const std::string bytes = world.files.readFile("settings/defaults.plist");
        world.files.writeFile("settings/defaults.plist", bytes.substr(0, bytes.size() / 2));
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(MainMenuItem::actualMenuItems(), ManageDefaults::defaultMenuItems());
        world.files.writeFile("settings/defaults.plist", bytes);
        ManageDefaults::loadAppMenusFromDisk(true);
        EXPECT_EQ(liveKinds(), (Strings { "fixedAppPreferences", "plaintext" }));
    }

    TEST_F(ManageDefaultsTest, FailuresOfTheLastEventAreShownBeforeTheEnd)
    {
        world.files.makeDirectory("settings/defaults.plist");
        const auto delegate = std::make_shared<AppDelegate>();
        NSApplication::shared().setDelegate(delegate);
        world.start();
        ManageDefaults::saveAllToDisk();
        world.desktop.duringAlert = [&] {
            EXPECT_FALSE(world.desktop.isStopped);
            if (world.desktop.alerts.size() == 1)
                world.defaults.reportFailure(Error { 0, "failed meanwhile", {} });
        };
        NSApplication::shared().terminate(nullptr);
        NSApplication::shared().setDelegate(nullptr);
        EXPECT_TRUE(world.desktop.isStopped);
        ASSERT_EQ(world.desktop.alerts.size(), 2U);
        const std::string cause = "couldn't read the settings \"" + world.defaults.path() + "\": Is a directory";
        EXPECT_EQ(world.desktop.alerts[0].informativeText(), cause + "\n\ncouldn't save the settings: " + cause);
        EXPECT_EQ(world.desktop.alerts[1].informativeText(), "failed meanwhile");
    }

    TEST_F(ManageDefaultsTest, SettingsThatCantBeWrittenAreReportedOnceTheEventIsOver)
    {
        world.files.writeFile("settings", "a file where the directory should be");
        world.start();
        {
            const NSApplication::EventScope event;
            ManageDefaults::saveAllToDisk();
        }
        EXPECT_TRUE(world.desktop.alerts.empty());
        world.clock.advance(std::chrono::milliseconds(0));
        ASSERT_EQ(world.desktop.alerts.size(), 1U);
        EXPECT_EQ(world.desktop.alerts[0].messageText(), "There is a problem with the settings of Quillbox");
        EXPECT_NE(world.desktop.alerts[0].informativeText().find(world.files.path("settings")), std::string::npos);
        EXPECT_EQ(World::loggedMessages().size(), 2U) << "they could not be read either";

        world.files.remove("settings");
        {
            const NSApplication::EventScope event;
        }
        EXPECT_EQ(UserDefaults(world.defaults.path()).integer("MenuSaveVersion"), 2) << "nothing was lost";
    }

    // A picked file of the stored list, loaded once.
    class PickedFile : public WorldTest {
    protected:
        PickedFile()
        {
            world.store({ MainMenuItemSaver(*pickedItem(world.files.writeFile("dir/picked.txt"))) });
            ManageDefaults::loadAllFromDisk();
            loaded = current();
        }
        static std::shared_ptr<MainMenuItem> current() { return MainMenuItem::actualMenuItems().back(); }
        void reload()
        {
            ManageDefaults::loadAppMenusFromDisk(true);
            ASSERT_TRUE(world.defaults.synchronize());
        }

        std::shared_ptr<MainMenuItem> loaded;
    };

    TEST_F(PickedFile, ThatStaysCausesNoReload)
    {
        EXPECT_EQ(loaded->fileURL->path(), world.files.path("dir/picked.txt"));
        ASSERT_EQ(ManageDefaults::fileReferences().size(), 1U);
        EXPECT_EQ(ManageDefaults::fileReferences()[0].path, loaded->fileURL->path());
        EXPECT_EQ(ManageDefaults::securityScopedURLs(), std::vector { *loaded->fileURL });
        reload();
        EXPECT_EQ(current(), loaded) << "a reload would have made new objects";
    }

    TEST_F(PickedFile, ThatIsRenamedIsFoundAndSavedAgain)
    {
        const auto stored = *world.defaults.data("UserPickedMenuItems");
        const std::string renamed = world.files.rename("dir/picked.txt", "dir/new name.txt");
        reload();
        EXPECT_NE(current(), loaded);
        EXPECT_EQ(current()->fileURL->path(), renamed);
        EXPECT_EQ(current()->unixPath, renamed);
        EXPECT_NE(*world.defaults.data("UserPickedMenuItems"), stored);
        EXPECT_TRUE(World::loggedMessages().empty());
    }

    TEST_F(PickedFile, ThatIsDeletedKeepsItsBytesAndComesBack)
    {
        const Data bytes = *loaded->bookmarkDataRaw;
        world.files.remove("dir/picked.txt");
        reload();
        EXPECT_FALSE(current()->fileURL);
        EXPECT_EQ(current()->unixPath, world.files.path("dir/picked.txt"));
        EXPECT_EQ(current()->bookmarkDataRaw, bytes);
        EXPECT_TRUE(ManageDefaults::securityScopedURLs().empty());
        EXPECT_TRUE(World::loggedMessages().empty());

        world.files.writeFile("dir/picked.txt", "new");
        reload();
        ASSERT_TRUE(current()->fileURL);
        EXPECT_EQ(current()->fileURL->path(), world.files.path("dir/picked.txt"));
    }

    TEST_F(PickedFile, WhoseBookmarkIsDamagedIsReportedAtEachOpeningWhileItIsThere)
    {
        auto damaged = MainMenuItemSaver(*loaded);
        damaged.bookmarkData = { 0xBA, 0xD0 };
        world.store({ damaged });
        ManageDefaults::loadAllFromDisk();
        ASSERT_EQ(World::loggedMessages().size(), 2U);
        EXPECT_TRUE(World::loggedMessages()[0].starts_with(
            "menu-item \"picked.txt\" couldn't convert a MainMenuItemSaver into a MainMenuItem, because\n"));
        EXPECT_TRUE(World::loggedMessages()[1].starts_with("resolvingBookmarkData() returned error: "));
        EXPECT_FALSE(current()->fileURL);
        reload();
        EXPECT_EQ(World::loggedMessages().size(), 4U);
        EXPECT_EQ(world.storedRecords().at(1).bookmarkData, damaged.bookmarkData);

        const std::string written = world.files.readFile("settings/defaults.plist");
        world.clock.advance(std::chrono::hours(1));
        reload();
        EXPECT_EQ(world.files.readFile("settings/defaults.plist"), written) << "once is enough";
    }

    TEST_F(PickedFile, WithoutABookmarkIsNeitherResolvedNorReported)
    {
        auto bare = MainMenuItemSaver(*loaded);
        bare.bookmarkData.clear();
        world.store({ bare });
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(current()->unixPath, world.files.path("dir/picked.txt"));
        EXPECT_FALSE(current()->fileURL);
        EXPECT_TRUE(World::loggedMessages().empty() && ManageDefaults::fileReferences().empty());
        ASSERT_TRUE(world.defaults.synchronize());
        EXPECT_EQ(world.storedRecords(), std::vector { bare }) << "there was nothing to save";
    }

    TEST_F(PickedFile, ThatGetsACanonicallyEqualNameIsNoticed)
    {
        const std::string composed = world.files.rename("dir/picked.txt", "dir/\u00E9");
        reload();
        const std::string decomposed = world.files.rename("dir/\u00E9", "dir/e\u0301");
        ASSERT_EQ(current()->unixPath, composed);
        reload();
        EXPECT_EQ(current()->unixPath, decomposed);
    }

} // namespace

} // namespace quillbox
