#include "Debug.h"
#include "MDQuery.h"
#include "MenuDump.h"
#include "World.h"

#include <gtest/gtest.h>

#include <set>

namespace quillbox {

namespace {

    using Type = MenuItemType;
    using Directory = SearchPathDirectory;
    using Domain = SearchPathDomainMask;

    class StatusMenu : public WorldTest { };

    void addBundle(World& world, Directory directory, Domain domain, const std::string& name)
    {
        const std::string home = (directory == Directory::applicationDirectory ? "Applications" : "Panes")
            + std::to_string(static_cast<unsigned>(domain));
        world.files.makeDirectory(home + "/" + name);
        world.directories.paths[{ directory, domain }] = { world.files.path(home) };
    }

    TEST_F(StatusMenu, TheDefaultListShowsSettingsAndApplications)
    {
        addBundle(world, Directory::applicationDirectory, Domain::systemDomainMask, "System Settings.app");
        addBundle(world, Directory::applicationDirectory, Domain::systemDomainMask, "Editor.app");
        addBundle(world, Directory::applicationDirectory, Domain::localDomainMask, "Browser.app");
        addBundle(world, Directory::applicationDirectory, Domain::userDomainMask, "Mine.app");
        addBundle(world, Directory::preferencePanesDirectory, Domain::systemDomainMask, "DateAndTime.prefPane");
        world.start();

        EXPECT_EQ(world.desktop.statusItem, world.controller->statusItem().get());
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
            item(Type::arbitraryPath, "nameless"),
            std::make_shared<MainMenuItem>(Type::arbitraryPath, "lost", "/lost/file", std::nullopt,
                                           menuOptionFlagsSv::showPathAsTooltip),
            pickedItem(world.files.path("home/letter.txt")),
            pickedItem("/gone/picked"),
            item(static_cast<Type>(99), "odd"),
        };
    }

    TEST_F(StatusMenu, EveryKindHasItsRow)
    {
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

    TEST_F(StatusMenu, OnlyTheFirstUpdateOfAnOpeningBuilds)
    {
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

    TEST_F(StatusMenu, DirectoriesAreListedAnewEachTimeTheyOpen)
    {
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

    TEST_F(StatusMenu, ChoosingHoldsTheItemUntilItsActionHasEnded)
    {
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

    // Merged groups

    class Merged : public WorldTest {
    protected:
        Merged()
        {
            for (const char* name : { "a/2", "a/10", "b/9", "other a/2", "u/1", "v/0" })
                world.files.writeFile(name);
            world.files.makeDirectory("empty");
            world.launch();
        }
        // "ROW: ENTRY|ENTRY|".
        std::string merge(const std::vector<std::string>& group1, const std::vector<std::string>& group2,
                          const std::string& message = "None Found")
        {
            const auto row = world.controller->createMenuItemForMainMenu(urls(group1), urls(group2), message, {}, {});
            return row->title() + (row->hasSubmenu() ? ": " + World::joinedTitles(row->submenu()->itemArray()) : "");
        }
        std::vector<URL> urls(const std::vector<std::string>& names) const
        {
            std::vector<URL> result;
            result.reserve(names.size());
            for (const std::string& name : names)
                result.push_back(URL::fileURLWithPath(world.files.path(name)));
            return result;
        }
    };

    TEST_F(Merged, GroupsOfDirectoriesBecomeOneMenu)
    {
        EXPECT_EQ(merge({ "gone", "a", "b" }, { "u", "v" }), "a: 2|9|10|---|0|1|") << "each group is sorted as a whole";
        EXPECT_EQ(merge({ "empty", "a" }, {}), "a: 2|10|") << "named after the first directory with entries";
        EXPECT_EQ(merge({ "a", "other a" }, {}), "a: 2|2|10|") << "equal names of several paths";
        EXPECT_EQ(merge({ "u", "u" }, { "u" }), "u: 1|---|") << "one path once, across the separator too";
        EXPECT_TRUE(World::loggedMessages().empty());
    }

    TEST_F(Merged, GroupsWithoutEntriesSaySo)
    {
        const std::string gone = world.files.path("gone") + " not found";
        const std::string empty = world.files.path("empty") + " not found";
        EXPECT_EQ(merge({ "empty" }, { "u" }), "empty: None Found|---|1|");
        EXPECT_EQ(merge({ "gone", "gone too" }, { "u" }), gone) << "no directory that the row could be of";
        EXPECT_EQ(merge({ "empty" }, { "gone" }, ""), "empty: " + empty + "|" + gone + "|");
        EXPECT_EQ(World::loggedMessages(),
                  (std::vector<std::string> { "None Found", "None Found", gone, empty, gone }));
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

    // Remembers what was looked for.
    class WatchingFileManager final : public FileManager {
    public:
        Result<FileKind> kind(const std::string& path) override
        {
            lookedFor.emplace(path::lastPathComponent(path));
            return FileManager::kind(path);
        }
        std::set<std::string> lookedFor;

    private:
        const Installed<FileManager> installed_ { *this };
    };

    class RecentItems : public WorldTest {
    protected:
        RecentItems()
        {
            for (const char* name : { "Report 10", "Report 9", "b.txt" })
                index.paths.push_back(world.files.writeFile(name));
            for (const char* name : { "plain", "x.prefPane", "kit.bundle" })
                index.paths.push_back(world.files.makeDirectory(name));
            // The same file by another path.
            index.paths.push_back(world.files.makeLink("shortcut", ".") + "/Report 9");
            for (const char* name : { "A.app", "Z.app" })
                index.paths.push_back(world.files.makeDirectory(name));
            index.paths.push_back("/gone");
        }
        std::string shown(Type type, std::int64_t limit, MenuOptionFlagsSv sv = {})
        {
            entry = item(type, "Recent", sv);
            entry->maxNumberOfRecentItems = limit;
            world.configure({ entry });
            return world.openedSubmenu("Recent");
        }

        FixedIndex index;
        std::shared_ptr<MainMenuItem> entry;
    };

    TEST_F(RecentItems, AreListedByKindNameAndLimit)
    {
        EXPECT_EQ(shown(Type::recentItems, 10),
                  "Applications|A|Z|---|Documents|b.txt|kit.bundle|Report 9|Report 10|---|Clear Menu|");
        EXPECT_EQ(shown(Type::recentItems, 10, menuOptionFlagsSv::sortByDate),
                  "Applications|Z|A|---|Documents|Report 9|kit.bundle|b.txt|Report 10|---|Clear Menu|");
        EXPECT_EQ(shown(Type::recentItems, 1), "Applications|Z|---|Documents|Report 9|---|Clear Menu|");
        EXPECT_EQ(shown(Type::recentItemsApps, 1), "Z|---|Clear Menu|");
        EXPECT_EQ(shown(Type::recentItemsDocs, 2), "kit.bundle|Report 9|---|Clear Menu|");
        EXPECT_EQ(index.cutOff, world.clock.now().addingSeconds(-31'536'000));
    }

    TEST_F(RecentItems, AreLookedForOnlyWhereTheyCouldBeListed)
    {
        const WatchingFileManager files;
        shown(Type::recentItems, 3);
        EXPECT_TRUE(files.lookedFor.contains("b.txt") && files.lookedFor.contains("Z.app"));
        EXPECT_FALSE(files.lookedFor.contains("Report 10")) << "three other documents were used later";
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

    TEST_F(RecentItems, TellTheirPathsWhereAskedTo)
    {
        shown(Type::recentItemsDocs, 5, menuOptionFlagsSv::showPathAsTooltip);
        FakeUser person = world.user();
        person.open().openSubmenu("Recent");
        EXPECT_EQ(person.row("b.txt")->toolTip(), world.files.path("b.txt"));
    }

    TEST_F(RecentItems, ClearingMovesTheCutOffAndSavesAtOnce)
    {
        shown(Type::recentItemsDocs, 5);
        world.clock.advance(std::chrono::hours(1));
        world.user().open().openSubmenu("Recent").choose("Clear Menu");
        EXPECT_EQ(entry->noRecentItemsOlderThan, world.clock.now());
        EXPECT_EQ(world.storedRecords().at(0).noRecentItemsOlderThan, world.clock.now());

        // The entry may be gone from the list by then.
        FakeUser person = world.user();
        person.open().openSubmenu("Recent");
        world.configure({});
        entry.reset();
        person.choose("Clear Menu");
    }

} // namespace

} // namespace quillbox
