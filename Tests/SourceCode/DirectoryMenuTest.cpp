#include "Installed.h"
#include "StatusMenuItemController.h"
#include "Unprivileged.h"
#include "World.h"

#include "Debug.h"
#include "FileDescriptor.h"
#include "MenuDump.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>

#include <array>
#include <filesystem>
#include <fstream>

namespace quillbox {

namespace {

    namespace sv = menuOptionFlagsSv;

    TEST(DirectoryMenu, ShowsFilesPackagesAndDirectories)
    {
        World world;
        world.files.makeDirectory("d/Sub");
        world.files.makeDirectory("d/Tool.app/Contents");
        world.files.makeDirectory("d/Kit.bundle");
        world.files.writeFile("d/notes.app", "a file of that name is no package");
        world.files.writeFile("d/a & b.txt");
        EXPECT_EQ(world.rows(world.files.path("d")),
                  "a & b.txt [icon of a & b.txt] (openTheClickedFileWithSender:)\n"
                  "Kit.bundle [icon of Kit.bundle] (openTheClickedFileWithSender:)\n"
                  "notes.app [icon of notes.app] (openTheClickedFileWithSender:)\n"
                  "Sub > [icon of Sub] (openTheClickedFileWithSender:)\n"
                  "Tool [icon of Tool.app] (openTheClickedFileWithSender:)\n");
    }

    TEST(DirectoryMenu, SubmenusCarryPathTitleAndFlags)
    {
        World world;
        world.launch();
        const std::string sub = world.files.makeDirectory("d/Sub");
        const auto items =
            world.controller->createSubMenuItems(URL::fileURLWithPath(world.files.path("d")), false,
                                                 MenuOptionFlagsSv(4 + 32), menuOptionFlagsDv::prefPaneDisplayNames);
        const auto item = std::dynamic_pointer_cast<NSMenuItemPlus>(items->at(0));
        EXPECT_TRUE(item->isDirectory);
        EXPECT_EQ(item->pathToOpen, sub);
        EXPECT_EQ(item->toolTip(), sub);
        EXPECT_EQ(item->image().size(), (NSSize { 16, 16 }));
        EXPECT_EQ(item->target(), world.controller);
        const auto menu = std::dynamic_pointer_cast<NSMenuDynamic>(item->submenu());
        EXPECT_EQ(menu->title(), "Sub");
        EXPECT_EQ(menu->menuDynamicContentsType, menuDynamicContents::directoryContents);
        EXPECT_EQ(menu->pathForMenuItems, sub);
        EXPECT_EQ(menu->optionFlagsSv.rawValue(), 36U);
        EXPECT_EQ(menu->optionFlagsDv, menuOptionFlagsDv::prefPaneDisplayNames);
        EXPECT_EQ(menu->delegate(), world.controller);
        EXPECT_EQ(menu->numberOfItems(), 0U);
    }

    TEST(DirectoryMenu, SortsNamesAsPeopleReadThem)
    {
        World world;
        const std::string many(40, '9');
        for (const char* name : { "file10", "file9", "File 2", "The Zoo", "Alpha", "\u201CQuoted\u201D name", "zebra" })
            world.files.writeFile("d/" + std::string(name));
        world.files.writeFile("d/n1" + std::string(40, '0'));
        world.files.writeFile("d/n" + many);
        using Titles = std::vector<std::string>;
        EXPECT_EQ(world.titles(world.files.path("d")),
                  (Titles { "Alpha", "File 2", "file9", "file10", "n" + many, "n1" + std::string(40, '0'), "The Zoo",
                            "zebra", "\u201CQuoted\u201D name" }));
        EXPECT_EQ(world.titles(world.files.path("d"), sv::ignoreArticles),
                  (Titles { "Alpha", "File 2", "file9", "file10", "n" + many, "n1" + std::string(40, '0'),
                            "\u201CQuoted\u201D name", "zebra", "The Zoo" }));
    }

    // Fixes the order of a listing.
    class OrderedFileManager final : public FileManager {
    public:
        explicit OrderedFileManager(std::vector<std::string> names) : names_(std::move(names)) { }

        Result<DirectoryListing> contentsOfDirectory(const URL& directory, DirectoryEnumerationOptions) override
        {
            DirectoryListing listing(directory.path());
            for (const std::string& name : names_)
                listing.append(name, DirectoryListing::EntryKind::file);
            return listing;
        }

    private:
        const Installed<FileManager> installed_ { *this };
        std::vector<std::string> names_;
    };

    TEST(DirectoryMenu, EqualNamesKeepTheOrderOfTheListing)
    {
        World world;
        const OrderedFileManager manager({ "b", "Apple", "e\u0301x", "apple", "\u00E9x", "APPLE" });
        EXPECT_EQ(world.titles("/any"),
                  (std::vector<std::string> { "Apple", "apple", "APPLE", "b", "e\u0301x", "\u00E9x" }));
    }

    TEST(DirectoryMenu, ShowsAndOpensNamesOfAnyKind)
    {
        World world;
        const std::string rightToLeft = "\xE2\x80\xAErtl\xE2\x80\x8F"; // NOLINT(misc-misleading-bidirectional): it is
        const std::vector<std::string> names {
            "line\nfeed", "bad\xFF\xFEutf8", std::string(255, 'x'), rightToLeft,         "\U0001F600 emoji",
            "tab\there",  "&amp; & _x_",     "\u00E9 composed",     "e\u0301 composed2", " leading and trailing ",
            "\x01",       "caf\xC3",
        };
        for (const std::string& name : names)
            world.files.writeFile("d/" + name);
        world.launch();
        const auto items =
            *world.controller->createSubMenuItems(URL::fileURLWithPath(world.files.path("d")), false, {}, {});
        ASSERT_EQ(items.size(), names.size());
        std::vector<std::string> opened;
        for (const auto& item : items)
            world.controller->openTheClickedFile(dynamic_cast<NSMenuItemPlus*>(item.get()));
        for (const std::string& name : names)
            EXPECT_NE(
                std::find(world.workspace.opened.begin(), world.workspace.opened.end(), world.files.path("d/" + name)),
                world.workspace.opened.end())
                << name;
        const auto titles = world.titles(world.files.path("d"));
        EXPECT_NE(std::find(titles.begin(), titles.end(), "bad\uFFFDutf8"), titles.end());
        EXPECT_NE(std::find(titles.begin(), titles.end(), "caf\uFFFD"), titles.end());
    }

    TEST(DirectoryMenu, LeavesHiddenEntriesOutUnlessAskedFor)
    {
        World world;
        world.files.writeFile("d/.dot");
        world.files.writeFile("d/.hidden", "told\n");
        world.files.writeFile("d/told");
        world.files.writeFile("d/shown");
        using Titles = std::vector<std::string>;
        EXPECT_EQ(world.titles(world.files.path("d")), (Titles { "shown" }));
        EXPECT_EQ(world.titles(world.files.path("d"), sv::showHiddenItems),
                  (Titles { ".dot", ".hidden", "shown", "told" }));
        EXPECT_TRUE(world.controller->createRecursiveMenuItem(URL::fileURLWithPath(world.files.path("d/.dot")),
                                                              std::nullopt, true, false, {}, {}))
            << "at the top level a hidden item is shown";
        EXPECT_FALSE(world.controller->createRecursiveMenuItem(URL::fileURLWithPath(world.files.path("d/.dot")),
                                                               std::nullopt, false, false, {}, {}));
    }

    TEST(DirectoryMenu, ReadsTheListOfHiddenNamesOnce)
    {
        World world;
        for (int number = 0; number < 40; ++number)
            world.files.writeFile("d/link " + std::to_string(number) + ".desktop");
        const std::string list = world.files.writeFile("d/.hidden", "link 7.desktop\n");
        const FileDescriptor opened(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
        ASSERT_GE(inotify_add_watch(opened.get(), list.c_str(), IN_OPEN), 0);
        EXPECT_EQ(world.rows(world.files.path("d")).find("link 7"), std::string::npos);
        std::array<inotify_event, 64> events {};
        EXPECT_EQ(::read(opened.get(), events.data(), sizeof events), ssize_t { sizeof(inotify_event) });
    }

    TEST(DirectoryMenu, AListingOfHiddenEntriesOnlySaysSo)
    {
        World world;
        const OrderedFileManager manager({ ".a", ".b" });
        EXPECT_EQ(world.rows("/x"), "This Directory Only Contains Hidden Files? -\n");
        EXPECT_EQ(World::loggedMessages(),
                  std::vector<std::string> { "This directory only contains hidden files?\n  \"/x\"" });
    }

    TEST(DirectoryMenu, ProblemsAreRows)
    {
        World world;
        const std::string empty = world.files.makeDirectory("empty");
        world.files.writeFile("dots/.only");
        const std::string file = world.files.writeFile("file");
        EXPECT_EQ(world.rows(empty), "Empty Directory -\n");
        EXPECT_EQ(world.rows(world.files.path("dots")), "Empty Directory -\n");
        EXPECT_EQ(world.rows(world.files.path("gone")), "Directory Doesn't Exist -\n");
        EXPECT_TRUE(World::loggedMessages().empty());
        EXPECT_EQ(world.rows(file), "This Is a File Not a Dir -\n");
        EXPECT_EQ(
            World::loggedMessages(),
            std::vector<std::string> { ".fileExists() says it's a valid file (not directory)?\n  \"" + file + "\"" });
        for (const std::string& path : { empty, world.files.path("gone"), file })
            EXPECT_FALSE(world.controller->createSubMenuItems(URL::fileURLWithPath(path), true, {}, {})) << path;
        EXPECT_FALSE(world.controller->createRecursiveMenuItem(URL::fileURLWithPath(world.files.path("gone")),
                                                               std::nullopt, true, true, {}, {}));
    }

    TEST(DirectoryMenu, RefusedDirectoriesTellWhatIsRefused)
    {
        World world;
        world.files.writeFile("listable/file");
        world.files.makeDirectory("listable/sub");
        world.files.makeDirectory("closed");
        // The owner is refused as well, since these tests run as root and as an ordinary user.
        namespace fs = std::filesystem;
        fs::permissions(world.files.path("listable"), fs::perms(0444));
        fs::permissions(world.files.path("closed"), fs::perms::none);
        fs::permissions(world.files.path(), fs::perms(0755));
        world.launch();
        const std::string base = world.files.path();
        const std::string seen = runWithoutPrivileges([&world, &base] {
            return world.rows(base + "/listable") + world.rows(base + "/listable/sub") + world.rows(base + "/closed");
        });
        EXPECT_EQ(seen,
                  "File Not Found?: " + base + "/listable/file -\n" + "File Not Found?: " + base + "/listable/sub -\n"
                      + "Directory Doesn't Exist -\n" + "Insufficient Permissions -\n");
        fs::permissions(world.files.path("listable"), fs::perms(0755));
    }

    class Links : public testing::Test {
    protected:
        // A chain of that many links to a directory; the name of its first link.
        std::string chain(int hops)
        {
            const std::string stem = "chain" + std::to_string(hops) + "-";
            world.files.makeDirectory("target");
            for (int hop = 1; hop <= hops; ++hop)
                world.files.makeLink("d/" + stem + std::to_string(hop),
                                     hop == hops ? "../target" : stem + std::to_string(hop + 1));
            return stem + "1";
        }
        std::shared_ptr<NSMenuItemPlus> item(const std::string& name)
        {
            if (!world.controller)
                world.launch();
            return std::dynamic_pointer_cast<NSMenuItemPlus>(world.controller->createRecursiveMenuItem(
                URL::fileURLWithPath(world.files.path("d/" + name)), std::nullopt, false, false, {}, {}));
        }

        World world;
    };

    TEST_F(Links, AreFollowedFor19Hops)
    {
        const auto reached = item(chain(19));
        EXPECT_TRUE(reached->hasSubmenu());
        EXPECT_EQ(reached->pathToOpen, world.files.path("d/../target"));
        EXPECT_EQ(reached->title(), "chain19-1");
        const auto given = item(chain(20));
        EXPECT_FALSE(given->hasSubmenu());
        EXPECT_EQ(given->pathToOpen, world.files.path("d/chain20-1"));
    }

    TEST_F(Links, KeepTheirOwnTitleExtensionAndIcon)
    {
        world.files.makeDirectory("apps/Tool.app");
        world.files.makeLink("d/Link.app", world.files.path("apps/Tool.app"));
        EXPECT_EQ(item("Link.app")->title(), "Link.app");
        EXPECT_EQ(item("Link.app")->image().source()->name(), "icon of Link.app");
        EXPECT_EQ(item("Link.app")->pathToOpen, world.files.path("apps/Tool.app"));
        EXPECT_FALSE(item("Link.app")->isDirectory);
    }

    TEST_F(Links, ThatLeadNowhereStandForThemselves)
    {
        world.files.makeLink("d/dangling", "nothing");
        world.files.makeLink("d/self", "self");
        world.files.makeLink("d/ping", "pong");
        world.files.makeLink("d/pong", "ping");
        for (const char* name : { "dangling", "self", "ping" }) {
            EXPECT_EQ(item(name)->pathToOpen, world.files.path("d/") + name);
            EXPECT_FALSE(item(name)->hasSubmenu());
        }
    }

    TEST_F(Links, GoOnFromTheirOwnDirectory)
    {
        // "up/.." is the parent of what "up" leads to, not the directory the text seems to say.
        world.files.makeDirectory("elsewhere/inner");
        world.files.makeDirectory("elsewhere/there");
        world.files.makeLink("d/up", world.files.path("elsewhere/inner"));
        world.files.makeLink("d/through", "up/../there");
        EXPECT_TRUE(item("through")->hasSubmenu());
        EXPECT_EQ(item("through")->pathToOpen, world.files.path("d/up/../there"));
    }

    TEST_F(Links, HiddenIsJudgedOnTheLink)
    {
        world.files.writeFile(".secret");
        world.files.makeLink("d/shown", "../.secret");
        world.files.makeLink("d/.not", "../open");
        EXPECT_TRUE(item("shown"));
        EXPECT_FALSE(item(".not"));
    }

    TEST_F(Links, AliasFilesLeadToTheirTarget)
    {
        const std::string target = world.files.makeDirectory("my target");
        world.files.writeFile("d/alias.desktop",
                              "[Desktop Entry]\nType=Link\nName=x\nURL=" + URL::fileURLWithPath(target).absoluteString()
                                  + "\n");
        world.files.writeFile("d/program.desktop", "[Desktop Entry]\nType=Application\nName=x\nExec=true\n");
        EXPECT_EQ(item("alias.desktop")->title(), "alias.desktop");
        EXPECT_EQ(item("alias.desktop")->pathToOpen, target);
        EXPECT_TRUE(item("alias.desktop")->hasSubmenu());
        EXPECT_FALSE(item("program.desktop")->hasSubmenu());
        // A listing follows links in the same way.
        EXPECT_EQ(world.rows(world.files.path("d")),
                  "alias.desktop > [icon of alias.desktop] (openTheClickedFileWithSender:)\n"
                  "program.desktop [icon of program.desktop] (openTheClickedFileWithSender:)\n");
    }

    TEST(PreferencePanes, AreTitledByTheirDisplayNames)
    {
        World world;
        const auto pane = [&world](const std::string& name, const std::string& entries) {
            world.files.writeFile("p/" + name + "/Contents/Info.plist",
                                  "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + entries + "</dict></plist>");
        };
        pane("DateAndTime.prefPane", "<key>CFBundleName</key><string>no</string>");
        pane("a.prefPane", "<key>CFBundleName</key><string>Zeta</string>");
        pane("b.prefPane", "<key>CFBundleExecutable</key><string>runner</string>");
        pane("c.prefPane", "<key>CFBundleName</key><true/>");
        pane("d.PrefPane", "<key>CFBundleName</key><string>not exactly a pane</string>");
        const auto dv = menuOptionFlagsDv::prefPaneDisplayNames;
        NSMenu menu;
        world.launch();
        menu.setItemArray(
            *world.controller->createSubMenuItems(URL::fileURLWithPath(world.files.path("p")), false, {}, dv));
        std::string titles;
        for (const auto& item : menu.itemArray())
            titles += item->title() + "|";
        EXPECT_EQ(titles, "c|d.PrefPane|Date & Time|runner|Zeta|");
        EXPECT_EQ(world.titles(world.files.path("p")),
                  (std::vector<std::string> { "a", "b", "c", "d.PrefPane", "DateAndTime" }));
        const auto named = world.controller->createRecursiveMenuItem(
            URL::fileURLWithPath(world.files.path("p/a.prefPane")), "Given.app", true, false, {}, dv);
        EXPECT_EQ(named->title(), "Given.app");
    }

    TEST(FileItem, OfARecentPathIsAPlainFileRow)
    {
        World world;
        world.launch();
        const std::string app = world.files.makeDirectory("Tool.app");
        const std::string dir = world.files.makeDirectory("plain");
        const auto owner = std::make_shared<MainMenuItem>(MenuItemType::recentItems);
        EXPECT_EQ(world.controller->createFileMenuItem(app, owner)->title(), "Tool");
        EXPECT_EQ(world.controller->createFileMenuItem("/gone/Other.app", owner)->title(), "Other.app");
        const auto item = world.controller->createFileMenuItem(dir, owner);
        EXPECT_FALSE(item->hasSubmenu() || item->isDirectory || !item->toolTip().empty());
        owner->optionFlagsSv = sv::showPathAsTooltip;
        EXPECT_EQ(world.controller->createFileMenuItem(dir, owner)->toolTip(), dir);
        EXPECT_TRUE(Debug::dynamicMenuItems().empty());
    }

} // namespace

} // namespace quillbox
