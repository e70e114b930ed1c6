#include "ManageDefaults.h"
#include "AppDelegate.h"
#include "Installed.h"
#include "MainMenuItemSaver.h"
#include "World.h"

#include <gtest/gtest.h>

#include <functional>

namespace quillbox {

namespace {

    using Type = MenuItemType;

    MainMenuItemSaver record(Type type, const std::string& title = "t")
    {
        return MainMenuItemSaver(MainMenuItem(type, title));
    }

    void store(World& world, const std::vector<MainMenuItemSaver>& records, std::int64_t version = 2)
    {
        world.defaults.set(*MainMenuItemSaver::encodeList(records), "UserPickedMenuItems");
        world.defaults.set(version, "MenuSaveVersion");
        ASSERT_TRUE(world.defaults.synchronize());
    }

    std::vector<std::string> liveKinds()
    {
        std::vector<std::string> kinds;
        for (const auto& item : MainMenuItem::actualMenuItems())
            kinds.emplace_back(rawValue(item->menuItemType));
        return kinds;
    }

    TEST(ManageDefaults, TheFirstStartShowsTheDefaultsAndWritesNothing)
    {
        World world;
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(MainMenuItem::actualMenuItems(), ManageDefaults::defaultMenuItems());
        EXPECT_EQ(liveKinds(),
                  (std::vector<std::string> { "fixedAppPreferences", "separator", "systemSettings", "separator",
                                              "systemApplicationsDirectory" }));
        ASSERT_TRUE(world.defaults.synchronize());
        EXPECT_FALSE(FileManager::defaultManager().fileExists(world.defaults.path()));
        EXPECT_TRUE(World::loggedMessages().empty());
    }

    TEST(ManageDefaults, TheOnePreferencesEntryComesFirst)
    {
        using Kinds = std::vector<std::string>;
        struct Case {
            std::vector<Type> stored;
            Kinds shown;
        };
        for (const Case& c : {
                 Case { { Type::plaintext }, { "fixedAppPreferences", "plaintext" } },
                 Case { { Type::plaintext, Type::fixedAppPreferences, Type::other, Type::fixedAppPreferences },
                        { "fixedAppPreferences", "plaintext", "other" } },
                 Case { {}, { "fixedAppPreferences" } },
             }) {
            World world;
            std::vector<MainMenuItemSaver> records;
            for (const Type type : c.stored)
                records.push_back(record(type));
            store(world, records);
            ManageDefaults::loadAllFromDisk();
            EXPECT_EQ(liveKinds(), c.shown);
        }
    }

    struct BadValue {
        const char* name;
        std::function<void(World&)> make;
        const char* message;
        bool keepsList;
    };

    class BadValues : public testing::TestWithParam<BadValue> { };

    TEST_P(BadValues, AreReportedAndChangeNothingStored)
    {
        World world;
        const auto before = std::make_shared<MainMenuItem>(Type::plaintext, "before");
        MainMenuItem::actualMenuItems() = { before };
        GetParam().make(world);
        ASSERT_TRUE(world.defaults.synchronize());
        const std::string bytes = world.files.readFile("settings/defaults.plist");
        ManageDefaults::loadAppMenusFromDisk(false);
        EXPECT_EQ(World::loggedMessages(), std::vector<std::string> { GetParam().message });
        if (GetParam().keepsList)
            EXPECT_EQ(MainMenuItem::actualMenuItems(), MainMenuItem::List { before });
        else
            EXPECT_EQ(MainMenuItem::actualMenuItems(), ManageDefaults::defaultMenuItems());
        ASSERT_TRUE(world.defaults.synchronize());
        EXPECT_EQ(world.files.readFile("settings/defaults.plist"), bytes);
    }

    void setVersion(World& world, PropertyList version)
    {
        store(world, { record(Type::plaintext) });
        world.defaults.set(std::move(version), "MenuSaveVersion");
    }

    constexpr char kUndecodable[] =
        "PropertyListDecoder.decode() couldn't decode \"UserPickedMenuItems\" (so assuming the default menus)";

    INSTANTIATE_TEST_SUITE_P(
        Stored, BadValues,
        testing::Values(
            BadValue { "text", [](World& w) { w.defaults.set("text", "UserPickedMenuItems"); },
                       "UserDefaults found a non-Data type for UserPickedMenuItems (so assuming the default menus)",
                       false },
            BadValue { "noPropertyList",
                       [](World& w) {
                           w.defaults.set(Data { 'b', 'p', 'l', 'i', 's', 't' }, "UserPickedMenuItems");
                       },
                       kUndecodable, false },
            BadValue { "empty",
                       [](World& w) {
                           w.defaults.set(Data {}, "UserPickedMenuItems");
                           w.defaults.set(std::int64_t { 2 }, "MenuSaveVersion");
                       },
                       kUndecodable, false },
            BadValue { "currentRecordsAsVersion1", [](World& w) { setVersion(w, std::int64_t { 1 }); }, kUndecodable,
                       false },
            BadValue { "version3", [](World& w) { setVersion(w, std::int64_t { 3 }); },
                       "UserDefaults prefsMenusSaveVersion had an unexpected value: 3", true },
            BadValue { "negativeVersion", [](World& w) { setVersion(w, std::int64_t { -1 }); },
                       "UserDefaults prefsMenusSaveVersion had an unexpected value: -1", true }),
        [](const auto& test) { return std::string(test.param.name); });

    TEST(ManageDefaults, UnknownKindsAreSkippedCountedAndStayStored)
    {
        World world;
        auto first = record(Type::plaintext, "kept");
        auto unknown = first;
        unknown.menuItemType = "hologram";
        store(world, { unknown, first, unknown });
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(liveKinds(), (std::vector<std::string> { "fixedAppPreferences", "plaintext" }));
        ASSERT_EQ(World::loggedMessages().size(), 3U);
        EXPECT_EQ(World::loggedMessages().back(),
                  "UserPickedMenuItems contained 2 entries that coudn't be turned into actual menu-items"
                  " (so the problem entries were skipped)");
        EXPECT_EQ(MainMenuItemSaver::decodeList(*world.defaults.data("UserPickedMenuItems"))->size(), 3U);
    }

    TEST(ManageDefaults, SavingRemovesTheOlderKeyAndKeepsTheSetting)
    {
        World world;
        world.defaults.set(std::int64_t { 1 }, "saveVersion");
        world.defaults.set(true, "ShowDebugTab");
        ManageDefaults::loadAllFromDisk();
        EXPECT_TRUE(ManageDefaults::showDebugTab());
        ManageDefaults::saveAllToDisk();
        EXPECT_FALSE(world.defaults.object("saveVersion"));
        EXPECT_EQ(world.defaults.integer("MenuSaveVersion"), 2);
        EXPECT_EQ(world.defaults.object("ShowDebugTab"), PropertyList(true));
        world.defaults.removeObject("ShowDebugTab");
        ManageDefaults::loadAllFromDisk();
        EXPECT_FALSE(ManageDefaults::showDebugTab());
    }

    TEST(ManageDefaults, WhatCanBeWrittenCanBeRead)
    {
        World world;
        MainMenuItemSaver large = record(Type::plaintext, std::string(60, 'x'));
        large.bookmarkData = Data(120, 1);
        const std::vector<MainMenuItemSaver> records(40000, large);
        store(world, records);
        EXPECT_EQ(*MainMenuItemSaver::decodeList(*UserDefaults(world.defaults.path()).data("UserPickedMenuItems")),
                  records);
    }

    TEST(ManageDefaults, AListThatStoodInIsReplacedOnceTheSettingsCanBeRead)
    {
        World world;
        store(world, { record(Type::plaintext) });
        UserDefaults late(world.defaults.path());
        const Installed<UserDefaults> installed(late);
        const std::string bytes = world.files.readFile("settings/defaults.plist");
        world.files.writeFile("settings/defaults.plist", bytes.substr(0, bytes.size() / 2));
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(MainMenuItem::actualMenuItems(), ManageDefaults::defaultMenuItems());
        world.files.writeFile("settings/defaults.plist", bytes);
        ManageDefaults::loadAppMenusFromDisk(true);
        EXPECT_EQ(liveKinds(), (std::vector<std::string> { "fixedAppPreferences", "plaintext" }));
    }

    TEST(ManageDefaults, FailuresOfTheLastEventAreShownBeforeTheEnd)
    {
        World world;
        world.files.makeDirectory("settings/defaults.plist");
        const auto delegate = std::make_shared<AppDelegate>();
        NSApplication::shared().setDelegate(delegate);
        delegate->applicationDidFinishLaunching();
        world.controller = AppDelegate::statusMenuItemController();
        AppDelegate::releaseStatusMenuItemController();
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

    TEST(ManageDefaults, SettingsThatCantBeWrittenAreReportedOnceTheEventIsOver)
    {
        World world;
        world.files.writeFile("settings", "a file where the directory should be");
        AppDelegate().applicationDidFinishLaunching();
        world.controller = AppDelegate::statusMenuItemController();
        AppDelegate::releaseStatusMenuItemController();
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
        world.files.makeDirectory("settings");
        {
            const NSApplication::EventScope event;
        }
        EXPECT_EQ(UserDefaults(world.defaults.path()).integer("MenuSaveVersion"), 2) << "nothing was lost";
    }

    // A picked file of the stored list, loaded once.
    class PickedFile : public testing::Test {
    protected:
        PickedFile()
        {
            world.files.writeFile("dir/picked.txt");
            store(world, { MainMenuItemSaver(*pickedItem(world.files.path("dir/picked.txt"))) });
            ManageDefaults::loadAllFromDisk();
            loaded = item();
        }
        static std::shared_ptr<MainMenuItem> item() { return MainMenuItem::actualMenuItems().back(); }
        void reload()
        {
            ManageDefaults::loadAppMenusFromDisk(true);
            ASSERT_TRUE(world.defaults.synchronize());
        }

        World world;
        std::shared_ptr<MainMenuItem> loaded;
    };

    TEST_F(PickedFile, ThatStaysCausesNoReload)
    {
        EXPECT_EQ(loaded->fileURL->path(), world.files.path("dir/picked.txt"));
        ASSERT_EQ(ManageDefaults::fileReferences().size(), 1U);
        EXPECT_EQ(ManageDefaults::fileReferences()[0].path, loaded->fileURL->path());
        EXPECT_EQ(ManageDefaults::securityScopedURLs(), std::vector { *loaded->fileURL });
        reload();
        EXPECT_EQ(item(), loaded) << "a reload would have made new objects";
    }

    TEST_F(PickedFile, ThatIsRenamedIsFoundAndSavedAgain)
    {
        const auto stored = *world.defaults.data("UserPickedMenuItems");
        const std::string renamed = world.files.rename("dir/picked.txt", "dir/new name.txt");
        reload();
        EXPECT_NE(item(), loaded);
        EXPECT_EQ(item()->fileURL->path(), renamed);
        EXPECT_EQ(item()->unixPath, renamed);
        EXPECT_NE(*world.defaults.data("UserPickedMenuItems"), stored);
        EXPECT_TRUE(World::loggedMessages().empty());
    }

    TEST_F(PickedFile, ThatIsDeletedKeepsItsBytesAndComesBack)
    {
        const Data bytes = *loaded->bookmarkDataRaw;
        world.files.remove("dir/picked.txt");
        reload();
        EXPECT_FALSE(item()->fileURL);
        EXPECT_EQ(item()->unixPath, world.files.path("dir/picked.txt"));
        EXPECT_EQ(item()->bookmarkDataRaw, bytes);
        EXPECT_TRUE(ManageDefaults::securityScopedURLs().empty());
        EXPECT_TRUE(World::loggedMessages().empty());

        world.files.writeFile("dir/picked.txt", "new");
        reload();
        ASSERT_TRUE(item()->fileURL);
        EXPECT_EQ(item()->fileURL->path(), world.files.path("dir/picked.txt"));
    }

    TEST_F(PickedFile, ThatAnEditorReplacesStaysAtItsPath)
    {
        world.files.writeFile("dir/picked.txt.new", "edited");
        world.files.rename("dir/picked.txt.new", "dir/picked.txt");
        reload();
        EXPECT_EQ(item()->fileURL->path(), world.files.path("dir/picked.txt"));
        EXPECT_TRUE(World::loggedMessages().empty());
    }

    TEST_F(PickedFile, WhoseBookmarkIsDamagedIsReportedAtEachOpeningWhileItIsThere)
    {
        auto damaged = MainMenuItemSaver(*loaded);
        damaged.bookmarkData = { 0xBA, 0xD0 };
        store(world, { damaged });
        ManageDefaults::loadAllFromDisk();
        ASSERT_EQ(World::loggedMessages().size(), 2U);
        EXPECT_TRUE(World::loggedMessages()[1].starts_with("resolvingBookmarkData() returned error: "));
        EXPECT_FALSE(item()->fileURL);
        reload();
        EXPECT_EQ(World::loggedMessages().size(), 4U);
        EXPECT_EQ(MainMenuItemSaver::decodeList(*world.defaults.data("UserPickedMenuItems"))->at(1).bookmarkData,
                  damaged.bookmarkData);

        const std::string written = world.files.readFile("settings/defaults.plist");
        world.clock.advance(std::chrono::hours(1));
        reload();
        EXPECT_EQ(world.files.readFile("settings/defaults.plist"), written) << "once is enough";
    }

    TEST_F(PickedFile, WithoutABookmarkIsNeitherResolvedNorReported)
    {
        auto bare = MainMenuItemSaver(*loaded);
        bare.bookmarkData.clear();
        store(world, { bare });
        const auto stored = *world.defaults.data("UserPickedMenuItems");
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(item()->unixPath, world.files.path("dir/picked.txt"));
        EXPECT_FALSE(item()->fileURL);
        EXPECT_TRUE(World::loggedMessages().empty() && ManageDefaults::fileReferences().empty());
        EXPECT_EQ(*world.defaults.data("UserPickedMenuItems"), stored);
    }

    TEST_F(PickedFile, ThatGetsACanonicallyEqualNameIsNoticed)
    {
        const std::string composed = world.files.rename("dir/picked.txt", "dir/\u00E9");
        reload();
        const std::string decomposed = world.files.rename("dir/\u00E9", "dir/e\u0301");
        ASSERT_EQ(item()->unixPath, composed);
        reload();
        EXPECT_EQ(item()->unixPath, decomposed);
    }

} // namespace

} // namespace quillbox
