#include "AppDelegate.h"
#include "Debug.h"
#include "MainMenuItemSaver.h"
#include "ManageDefaults.h"
#include "MDQuery.h"
#include "MenuDump.h"
#include "World.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    using Type = MenuItemType;
    using Directory = SearchPathDirectory;
    using Domain = SearchPathDomainMask;

    std::shared_ptr<MainMenuItem> item(Type type, const std::string& title, MenuOptionFlagsSv sv = {})
    {
        return std::make_shared<MainMenuItem>(type, title, std::nullopt, std::nullopt, sv);
    }

    void addBundle(World& world, Directory directory, Domain domain, const std::string& name)
    {
        const std::string home = (directory == Directory::applicationDirectory ? "Applications" : "Panes")
            + std::to_string(static_cast<unsigned>(domain));
        world.files.makeDirectory(home + "/" + name);
        world.directories.paths[{ directory, domain }] = { world.files.path(home) };
    }

    TEST(StatusMenu, TheDefaultListShowsSettingsAndApplications)
    {
        World world;
        addBundle(world, Directory::applicationDirectory, Domain::systemDomainMask, "System Settings.app");
        addBundle(world, Directory::applicationDirectory, Domain::systemDomainMask, "Editor.app");
        addBundle(world, Directory::applicationDirectory, Domain::localDomainMask, "Browser.app");
        addBundle(world, Directory::applicationDirectory, Domain::userDomainMask, "Mine.app");
        addBundle(world, Directory::preferencePanesDirectory, Domain::systemDomainMask, "DateAndTime.prefPane");
        AppDelegate().applicationDidFinishLaunching();
        world.controller = AppDelegate::statusMenuItemController();
        AppDelegate::releaseStatusMenuItemController();

        EXPECT_EQ(world.desktop.statusItem, world.controller->statusItem().get());
        EXPECT_EQ(world.controller->statusItem()->menu()->numberOfItems(), 0U);
        ASSERT_TRUE(world.controller->statusItem()->button()->image);
        EXPECT_TRUE(world.controller->statusItem()->button()->image->isTemplate());
        EXPECT_EQ(world.openedMenu(),
                  "Quillbox Preferences... (openAppPreferencesWindowWithSender:)\n"
                  "---\n"
                  "System Settings > [icon of System Settings.app] (openSystemSettingsWithSender:)\n"
                  "  Date & Time [icon of DateAndTime.prefPane] (openTheClickedFileWithSender:)\n"
                  "---\n"
                  "Applications > [icon of Applications2] (openTheClickedFileWithSender:)\n"
                  "  Browser [icon of Browser.app] (openTheClickedFileWithSender:)\n"
                  "  Editor [icon of Editor.app] (openTheClickedFileWithSender:)\n"
                  "  System Settings [icon of System Settings.app] (openTheClickedFileWithSender:)\n"
                  "  ---\n"
                  "  Mine [icon of Mine.app] (openTheClickedFileWithSender:)\n");
        EXPECT_EQ(world.controller->statusItem()->menu()->numberOfItems(), 0U) << "closed means empty";
    }

    std::vector<std::shared_ptr<MainMenuItem>> oneOfEveryKind(const World& world)
    {
        return {
            item(Type::fixedAppPreferences, "not this title"),
            item(Type::plaintext, "label"),
            item(Type::plaintext, "grey label", menuOptionFlagsSv::showPlaintextAsDisabled),
            item(Type::recentItems, "Recent"),
            item(Type::userHomeDirectory, "My home"),
            item(Type::userDesktopDirectory, "My desktop"),
            item(Type::userDocumentsDirectory, "My documents"),
            item(Type::userDownloadsDirectory, "My downloads"),
            item(Type::systemSettings, "Panel"),
            item(Type::systemApplicationsDirectory, "Programs"),
            std::make_shared<MainMenuItem>(Type::arbitraryPath, "nameless"),
            std::make_shared<MainMenuItem>(Type::arbitraryPath, "lost", "/lost/file", std::nullopt,
                                           menuOptionFlagsSv::showPathAsTooltip),
            pickedItem(world.files.path("home/letter.txt")),
            pickedItem("/gone/picked"),
            std::make_shared<MainMenuItem>(static_cast<Type>(99), "odd"),
        };
    }

    TEST(StatusMenu, EveryKindHasItsRow)
    {
        World world;
        world.directories.home = world.files.makeDirectory("home");
        world.files.writeFile("home/letter.txt");
        const std::string desktop = world.files.makeDirectory("home/Desktop");
        world.directories.paths[{ Directory::desktopDirectory, Domain::userDomainMask }] = { desktop };
        world.directories.paths[{ Directory::documentDirectory, Domain::userDomainMask }] = { "/gone/Documents" };
        world.configure(oneOfEveryKind(world));
        world.directories.paths[{ Directory::applicationDirectory, Domain::systemDomainMask }] = { "/gone/apps" };
        world.directories.paths[{ Directory::preferencePanesDirectory, Domain::systemDomainMask }] = { "/gone/panes" };

        EXPECT_EQ(world.openedMenu(),
                  "Quillbox Preferences... (openAppPreferencesWindowWithSender:)\n"
                  "label [NSAdvanced] (doNothingWithSender:)\n"
                  "grey label [NSAdvanced] -\n"
                  "Recent > [NSRevealFreestandingTemplate]\n"
                  "My home > [icon of home] (openTheClickedFileWithSender:)\n"
                  "  Desktop > [icon of Desktop] (openTheClickedFileWithSender:)\n"
                  "  letter.txt [icon of letter.txt] (openTheClickedFileWithSender:)\n"
                  "My desktop > [icon of Desktop] (openTheClickedFileWithSender:)\n"
                  "  " + desktop
                      + " Not Found [drawn NSStatusUnavailable] -\n"
                        "My documents [drawn NSStatusUnavailable] -\n"
                        "userDownloadsDirectory [drawn NSStatusUnavailable] -\n"
                        "Panel [NSPreferencesGeneral] (openSystemSettingsWithSender:)\n"
                        "Programs [drawn NSStatusUnavailable] -\n"
                        "nameless [drawn NSStatusUnavailable] (openTheClickedFileWithSender:)\n"
                        "lost [drawn NSStatusUnavailable] (openTheClickedFileWithSender:) \"/lost/file\"\n"
                        "letter.txt [icon of letter.txt] (openTheClickedFileWithSender:)\n"
                        "File Not Found?: /gone/picked -\n"
                        "unknown] [drawn NSStatusUnavailable] -\n");
        EXPECT_EQ(World::loggedMessages(),
                  (std::vector<std::string> {
                      "UserDefaults prefsMenusSaveVersion had an unexpected value: 3",
                      desktop + " Not Found",
                      "/gone/Documents Not Found",
                      "/gone/Documents not found",
                      "type userDownloadsDirectory: FileManager.default.urls returned an empty-array for this group",
                      "System Settings Not Found",
                      "/gone/panes not found",
                      "Applications Not Found",
                      "/gone/apps not found",
                      "resourceValues() returned nil for path:\n  \"/gone/picked\"",
                      "type unknown: MainMenuItem.menuItemInfo[] doesn't have info for this type",
                  }));
    }

    TEST(StatusMenu, OnlyTheFirstUpdateOfAnOpeningBuilds)
    {
        World world;
        world.files.writeFile("d/x");
        world.configure({ pickedItem(world.files.path("d")) });
        NSMenu& top = *world.controller->statusItem()->menu();
        world.controller->menuNeedsUpdate(top);
        const auto built = top.itemArray();
        ASSERT_EQ(built.size(), 1U);
        NSMenu& directory = *built[0]->submenu();
        world.controller->menuNeedsUpdate(directory);
        world.controller->menuNeedsUpdate(top);
        EXPECT_EQ(directory.numberOfItems(), 0U);
        EXPECT_EQ(top.itemArray(), built);
        world.controller->menuWillOpen(top);
        world.controller->menuNeedsUpdate(directory);
        EXPECT_EQ(directory.numberOfItems(), 1U);
        world.controller->menuDidClose(directory);
        EXPECT_EQ(top.itemArray(), built) << "a submenu's end leaves the top level alone";
        world.controller->menuDidClose(top);
        EXPECT_EQ(top.numberOfItems(), 0U);
    }

    TEST(StatusMenu, DirectoriesAreListedAnewEachTimeTheyOpen)
    {
        World world;
        world.files.writeFile("d/sub/one");
        world.configure({ pickedItem(world.files.path("d")) });
        FakeUser person = world.user();
        person.open().openSubmenu("d").openSubmenu("sub");
        EXPECT_EQ(person.sees(), "one [icon of one] (openTheClickedFileWithSender:)\n");
        person.closeDeepest();
        world.files.remove("d/sub");
        person.openSubmenu("sub");
        EXPECT_EQ(person.sees(), "Directory Doesn't Exist -\n");
    }

    TEST(StatusMenu, ChoosingHoldsTheItemUntilItsActionHasEnded)
    {
        World world;
        const std::string file = world.files.writeFile("d/file");
        world.configure({ pickedItem(world.files.path("d")) });
        FakeUser person = world.user();
        person.open().openSubmenu("d");
        EXPECT_EQ(Debug::dynamicMenuItems().size(), 2U);
        bool wasOffScreen = false;
        person.tracking().onTakeOffScreen = [&] { wasOffScreen = world.workspace.opened.empty(); };
        person.choose("file");
        EXPECT_TRUE(wasOffScreen);
        EXPECT_EQ(world.workspace.opened, std::vector { file });
        EXPECT_EQ(person.sees(), "(closed)");
        EXPECT_EQ(Debug::dynamicMenuItems().size(), 1U) << "the chosen item was alive when the list was pruned";
        EXPECT_TRUE(Debug::dynamicMenuItems()[0].value.expired());
        world.user().open().close();
        EXPECT_TRUE(Debug::dynamicMenuItems().empty());
    }

    TEST(StatusMenu, APickedFileThatMovesIsShownWhereItIsNow)
    {
        World world;
        world.files.writeFile("d/old/file");
        world.defaults.set(
            *MainMenuItemSaver::encodeList({ MainMenuItemSaver(*pickedItem(world.files.path("d/old"))) }),
            "UserPickedMenuItems");
        world.defaults.set(std::int64_t { 2 }, "MenuSaveVersion");
        ManageDefaults::loadAllFromDisk();
        world.launch();
        const std::string moved = world.files.rename("d/old", "moved");
        FakeUser person = world.user();
        person.open();
        EXPECT_EQ(std::dynamic_pointer_cast<NSMenuItemPlus>(person.row("old"))->pathToOpen, moved);
        person.openSubmenu("old");
        EXPECT_EQ(person.sees(), "file [icon of file] (openTheClickedFileWithSender:)\n");
        person.close();
        EXPECT_EQ(MainMenuItem::actualMenuItems().back()->unixPath, moved);
    }

    // Merged groups

    class Merged : public testing::Test {
    protected:
        std::vector<URL> group(const std::vector<std::string>& names)
        {
            std::vector<URL> result;
            result.reserve(names.size());
            for (const std::string& name : names)
                result.push_back(URL::fileURLWithPath(world.files.path(name)));
            return result;
        }
        std::string merge(const std::vector<std::string>& group1, const std::vector<std::string>& group2,
                          const std::string& message = "None Found")
        {
            world.launch();
            NSMenu menu;
            menu.addItem(world.controller->createMenuItemForMainMenu(group(group1), group(group2), message, {}, {}));
            return menuDump(menu);
        }
        static std::string row(const std::string& name)
        {
            return "  " + name + " [icon of " + name + "] (openTheClickedFileWithSender:)\n";
        }

        World world;
    };

    TEST_F(Merged, ListsOfSeveralDirectoriesAreSortedTogether)
    {
        for (const char* name : { "a/2", "a/10", "b/9", "u/1", "v/0" })
            world.files.writeFile(name);
        EXPECT_EQ(merge({ "gone", "a", "b" }, { "u", "v" }),
                  "a > [icon of a] (openTheClickedFileWithSender:)\n" + row("2") + row("9") + row("10") + "  ---\n"
                      + row("0") + row("1"));
    }

    TEST_F(Merged, TheFirstDirectoryWithEntriesIsTheResult)
    {
        world.files.makeDirectory("empty");
        world.files.writeFile("full/x");
        EXPECT_EQ(merge({ "empty", "full" }, {}), "full > [icon of full] (openTheClickedFileWithSender:)\n" + row("x"));
        EXPECT_TRUE(World::loggedMessages().empty());
    }

    TEST_F(Merged, AnEmptyFirstGroupSaysSoBeforeTheSecond)
    {
        world.files.makeDirectory("empty");
        world.files.writeFile("user/x");
        EXPECT_EQ(merge({ "empty" }, { "user" }),
                  "empty > [icon of empty] (openTheClickedFileWithSender:)\n"
                  "  None Found [drawn NSStatusUnavailable] -\n  ---\n"
                      + row("x"));
        EXPECT_EQ(World::loggedMessages(), std::vector<std::string> { "None Found" });
    }

    TEST_F(Merged, WithNoFirstGroupThereIsOneRow)
    {
        world.files.writeFile("user/x");
        const std::string missing = world.files.path("gone") + " not found";
        EXPECT_EQ(merge({ "gone", "gone2" }, { "user" }), missing + " [drawn NSStatusUnavailable] -\n");
        EXPECT_EQ(World::loggedMessages(), (std::vector<std::string> { "None Found", missing }));
    }

    TEST_F(Merged, WithoutAMessageEveryEmptyDirectoryIsNamed)
    {
        world.files.makeDirectory("e");
        EXPECT_EQ(merge({ "e" }, { "f" }, ""),
                  "e > [icon of e] (openTheClickedFileWithSender:)\n  " + world.files.path("e")
                      + " not found [drawn NSStatusUnavailable] -\n  " + world.files.path("f")
                      + " not found [drawn NSStatusUnavailable] -\n");
    }

    TEST_F(Merged, RepeatedNeighboursAreShownOnceEvenAcrossTheSeparator)
    {
        world.files.writeFile("a/same");
        world.files.writeFile("b/same");
        EXPECT_EQ(merge({ "a", "b" }, {}),
                  "a > [icon of a] (openTheClickedFileWithSender:)\n" + row("same") + row("same"))
            << "other paths, so both stay";
        world.controller.reset();
        EXPECT_EQ(merge({ "a", "a" }, { "a" }),
                  "a > [icon of a] (openTheClickedFileWithSender:)\n" + row("same") + "  ---\n");
    }

    // Recent items

    class FixedIndex final : public MetadataIndex {
    public:
        std::vector<std::string> pathsLastUsed(Date from, Date) override
        {
            cutOff = from;
            return paths;
        }
        std::vector<std::string> paths;
        Date cutOff;

    private:
        const Installed<MetadataIndex> installed_ { *this };
    };

    class RecentItems : public testing::Test {
    protected:
        RecentItems()
        {
            for (const char* name : { "Report 10", "Report 9", "b.txt" })
                index.paths.push_back(world.files.writeFile(name));
            for (const char* name : { "Z.app", "plain", "x.prefPane", "kit.bundle", "A.app" })
                index.paths.push_back(world.files.makeDirectory(name));
            index.paths.push_back("/gone");
        }
        std::string shown(Type type, std::int64_t limit, MenuOptionFlagsSv sv = {})
        {
            entry = item(type, "Recent", sv);
            entry->maxNumberOfRecentItems = limit;
            world.configure({ entry });
            FakeUser person = world.user();
            person.open().openSubmenu("Recent");
            std::string text;
            for (const auto& row : person.tracking().menu(1)->itemArray())
                text += (row->isSeparatorItem()       ? "---"
                             : row->attributedTitle() ? row->attributedTitle()->string()
                                                      : row->title())
                    + "|";
            return text;
        }
        World world;
        FixedIndex index;
        std::shared_ptr<MainMenuItem> entry;
    };

    TEST_F(RecentItems, AreListedByKindNameAndLimit)
    {
        EXPECT_EQ(shown(Type::recentItems, 10),
                  "Applications|A|Z|---|Documents|b.txt|kit.bundle|Report 9|Report 10|---|Clear Menu|");
        EXPECT_EQ(shown(Type::recentItems, 10, menuOptionFlagsSv::sortByDate),
                  "Applications|A|Z|---|Documents|kit.bundle|b.txt|Report 9|Report 10|---|Clear Menu|");
        EXPECT_EQ(shown(Type::recentItemsApps, 1), "A|---|Clear Menu|");
        EXPECT_EQ(shown(Type::recentItemsDocs, 2), "b.txt|kit.bundle|---|Clear Menu|");
        EXPECT_EQ(index.cutOff, world.clock.now().addingSeconds(-31'536'000));
    }

    TEST_F(RecentItems, WithNothingToListShowANote)
    {
        index.paths.clear();
        const std::string note = "Note that \"Recent\" can only show items\n"
                                 "that Quillbox can already access, such as items\n"
                                 "inside directories that Quillbox will browse|";
        EXPECT_EQ(shown(Type::recentItems, 5), "Applications|None|---|Documents|None|---|" + note);
        EXPECT_EQ(shown(Type::recentItemsDocs, 0), "None|---|" + note);
    }

    TEST_F(RecentItems, ClearingMovesTheCutOffAndSavesAtOnce)
    {
        shown(Type::recentItemsDocs, 5);
        world.clock.advance(std::chrono::hours(1));
        FakeUser person = world.user();
        person.open().openSubmenu("Recent").choose("Clear Menu");
        EXPECT_EQ(entry->noRecentItemsOlderThan, world.clock.now());
        UserDefaults reread(world.defaults.path());
        EXPECT_EQ(MainMenuItemSaver::decodeList(*reread.data("UserPickedMenuItems"))->at(0).noRecentItemsOlderThan,
                  world.clock.now());

        reread.removePersistentDomain("org.quillbox.Quillbox");
        const auto orphan = std::make_shared<NSMenuItemPlus>();
        world.controller->clearRecentItemsMenu(orphan.get());
        world.controller->clearRecentItemsMenu(nullptr);
        EXPECT_TRUE(world.defaults.object("MenuSaveVersion")) << "with nothing to clear it still saves";
    }

} // namespace

} // namespace quillbox
