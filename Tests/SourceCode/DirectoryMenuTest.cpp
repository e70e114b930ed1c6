#include "StatusMenuItemController.h"
#include "Unprivileged.h"
#include "World.h"

#include "FileDescriptor.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>

#include <array>
#include <filesystem>
#include <fstream>

namespace quillbox {

namespace {

    namespace sv = menuOptionFlagsSv;
    using Titles = std::vector<std::string>;

    class DirectoryMenu : public WorldTest { };

    TEST_F(DirectoryMenu, ShowsFilesPackagesAndDirectories)
    {
        world.files.makeDirectory("d/Sub");
        world.files.makeDirectory("d/Tool.app/Contents");
        world.files.makeDirectory("d/Kit.bundle");
        world.files.writeFile("d/notes.app", "a file of that name is no package");
        world.files.writeFile("d/a & b.txt");
        EXPECT_EQ(world.rows("d"),
                  "a & b.txt [icon of a & b.txt] (openTheClickedFileWithSender:)\n"
                  "Kit.bundle [icon of Kit.bundle] (openTheClickedFileWithSender:)\n"
                  "notes.app [icon of notes.app] (openTheClickedFileWithSender:)\n"
                  "Sub > [icon of Sub] (openTheClickedFileWithSender:)\n"
                  "Tool [icon of Tool.app] (openTheClickedFileWithSender:)\n");
    }

    TEST_F(DirectoryMenu, SubmenusCarryPathTitleAndFlags)
    {
        const std::string sub = world.files.makeDirectory("d/Sub");
        const auto items = world.items("d", MenuOptionFlagsSv(4 + 32), menuOptionFlagsDv::prefPaneDisplayNames);
        const auto item = std::dynamic_pointer_cast<NSMenuItemPlus>(items.at(0));
        EXPECT_TRUE(item->isDirectory);
        EXPECT_EQ(item->pathToOpen(), sub);
        EXPECT_EQ(item->toolTip(), sub);
        EXPECT_EQ(item->image().size(), (NSSize { 16, 16 }));
        const auto menu = std::dynamic_pointer_cast<NSMenuDynamic>(item->submenu());
        EXPECT_EQ(menu->title(), "Sub");
        EXPECT_EQ(menu->optionFlagsSv.rawValue(), 36U);
        EXPECT_EQ(menu->optionFlagsDv, menuOptionFlagsDv::prefPaneDisplayNames);
        EXPECT_EQ(menu->numberOfItems(), 0U);
    }

    TEST_F(DirectoryMenu, SortsNamesAsPeopleReadThem)
    {
        const std::string large = "n" + std::string(40, '9');
        const std::string larger = "n1" + std::string(40, '0');
        for (const std::string& name : Titles { "file10", "file9", "File 2", "The Zoo", "Alpha",
                                                "\u201CQuoted\u201D name", "zebra", larger, large })
            world.files.writeFile("d/" + name);
        EXPECT_EQ(world.titles("d"),
                  (Titles { "Alpha", "File 2", "file9", "file10", large, larger, "The Zoo", "zebra",
                            "\u201CQuoted\u201D name" }));
        EXPECT_EQ(world.titles("d", sv::ignoreArticles),
                  (Titles { "Alpha", "File 2", "file9", "file10", large, larger, "\u201CQuoted\u201D name", "zebra",
                            "The Zoo" }));
    }

    TEST_F(DirectoryMenu, ShowsAndOpensNamesOfAnyKind)
    {
        const std::string longest(255, 'x');
        const std::string rightToLeft = "\xE2\x80\xAErtl\xE2\x80\x8F"; // NOLINT(misc-misleading-bidirectional): it is
        for (const auto& [name, title] : std::vector<std::pair<std::string, std::string>> {
                 { "bad\xFF\xFEutf8", "bad\uFFFDutf8" },
                 { "caf\xC3", "caf\uFFFD" },
                 { "line\nfeed", "line\nfeed" },
                 { "\x01", "\x01" },
                 { " &amp; & _x_ ", " &amp; & _x_ " },
                 { rightToLeft, rightToLeft },
                 { longest, longest },
             }) {
            world.files.writeFile("d/" + name);
            const auto items = world.items("d");
            ASSERT_EQ(items.size(), 1U) << title;
            EXPECT_EQ(items[0]->title(), title);
            world.controller->openTheClickedFile(dynamic_cast<NSMenuItemPlus*>(items[0].get()));
            EXPECT_EQ(world.workspace.opened.back(), world.files.path("d/" + name));
            world.files.remove("d/" + name);
        }
    }

    TEST_F(DirectoryMenu, LeavesHiddenEntriesOutUnlessAskedFor)
    {
        world.files.writeFile("d/.dot");
        world.files.writeFile("d/.hidden", "told\n");
        world.files.writeFile("d/told");
        world.files.writeFile("d/shown");
        EXPECT_EQ(world.titles("d"), (Titles { "shown" }));
        EXPECT_EQ(world.titles("d", sv::showHiddenItems), (Titles { ".dot", ".hidden", "shown", "told" }));
        const URL dot = URL::fileURLWithPath(world.files.path("d/.dot"));
        EXPECT_TRUE(world.controller->createRecursiveMenuItem(dot, std::nullopt, true, false, {}, {}))
            << "at the top level a hidden item is shown";
        EXPECT_FALSE(world.controller->createRecursiveMenuItem(dot, std::nullopt, false, false, {}, {}));
    }

    TEST_F(DirectoryMenu, ReadsTheListOfHiddenNamesOnce)
    {
        for (int number = 0; number < 40; ++number)
            world.files.writeFile("d/link " + std::to_string(number) + ".desktop");
        const std::string list = world.files.writeFile("d/.hidden", "link 7.desktop\n");
        const FileDescriptor opened(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
        ASSERT_GE(inotify_add_watch(opened.get(), list.c_str(), IN_OPEN), 0);
        EXPECT_EQ(world.rows("d").find("link 7"), std::string::npos);
        std::array<inotify_event, 64> events {};
        EXPECT_EQ(::read(opened.get(), events.data(), sizeof events), ssize_t { sizeof(inotify_event) });
    }

    TEST_F(DirectoryMenu, ProblemsAreRows)
    {
        world.files.makeDirectory("empty");
        world.files.writeFile("dots/.only");
        const std::string file = world.files.writeFile("file");
        EXPECT_EQ(world.rows("empty"), "Empty Directory -\n");
        EXPECT_EQ(world.rows("dots"), "Empty Directory -\n");
        EXPECT_EQ(world.rows("gone"), "Directory Doesn't Exist -\n");
        EXPECT_TRUE(World::loggedMessages().empty());
        EXPECT_EQ(world.rows("file"), "This Is a File Not a Dir -\n");
        EXPECT_EQ(World::loggedMessages(),
                  Titles { ".fileExists() says it's a valid file (not directory)?\n  \"" + file + "\"" });
    }

    TEST_F(DirectoryMenu, RefusedDirectoriesTellWhatIsRefused)
    {
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
        const std::string seen = runWithoutPrivileges(
            [this] { return world.rows("listable") + world.rows("listable/sub") + world.rows("closed"); });
        EXPECT_EQ(seen,
                  "File Not Found?: " + base + "/listable/file -\n" + "File Not Found?: " + base + "/listable/sub -\n"
                      + "Directory Doesn't Exist -\n" + "Insufficient Permissions -\n");
        fs::permissions(world.files.path("listable"), fs::perms(0755));
    }

    class Links : public WorldTest {
    protected:
        std::shared_ptr<NSMenuItemPlus> item(const std::string& name)
        {
            world.launch();
            return std::dynamic_pointer_cast<NSMenuItemPlus>(world.controller->createRecursiveMenuItem(
                URL::fileURLWithPath(world.files.path("d/" + name)), std::nullopt, false, false, {}, {}));
        }
    };

    TEST_F(Links, AreRowsOfTheirOwnThatOpenTheirEnd)
    {
        const std::string end = world.files.makeDirectory("my target");
        world.files.makeLink("d/second", "../my target");
        world.files.makeLink("d/first", "second");
        world.files.writeFile("d/alias.desktop",
                              "[Desktop Entry]\nType=Link\nName=x\nURL=" + URL::fileURLWithPath(end).absoluteString()
                                  + "\n");
        for (const auto& [name, opens] :
             { std::pair("first", world.files.path("d/../my target")), { "alias.desktop", end } }) {
            EXPECT_EQ(item(name)->title(), name);
            EXPECT_EQ(item(name)->image().source()->name(), std::string("icon of ") + name);
            EXPECT_EQ(item(name)->pathToOpen(), opens);
            EXPECT_TRUE(item(name)->hasSubmenu()) << "as the end has";
        }
        world.files.writeFile("d/program.desktop", "[Desktop Entry]\nType=Application\nName=x\nExec=true\n");
        EXPECT_EQ(world.rows("d"),
                  "alias.desktop > [icon of alias.desktop] (openTheClickedFileWithSender:)\n"
                  "first > [icon of first] (openTheClickedFileWithSender:)\n"
                  "program.desktop [icon of program.desktop] (openTheClickedFileWithSender:)\n"
                  "second > [icon of second] (openTheClickedFileWithSender:)\n")
            << "a listing follows links in the same way";
    }

    TEST_F(Links, ToPackagesKeepTheirExtension)
    {
        const std::string tool = world.files.makeDirectory("apps/Tool.app");
        world.files.makeLink("d/Link.app", tool);
        EXPECT_EQ(item("Link.app")->title(), "Link.app");
        EXPECT_EQ(item("Link.app")->pathToOpen(), tool);
        EXPECT_FALSE(item("Link.app")->isDirectory);
    }

    TEST_F(Links, ThatLeadNowhereStandForThemselves)
    {
        world.files.makeLink("d/dangling", "nothing");
        EXPECT_EQ(item("dangling")->pathToOpen(), world.files.path("d/dangling"));
        EXPECT_FALSE(item("dangling")->hasSubmenu());
    }

    TEST_F(Links, AreHiddenByTheirOwnName)
    {
        world.files.writeFile(".secret");
        world.files.makeLink("d/shown", "../.secret");
        world.files.makeLink("d/.not", "../open");
        EXPECT_TRUE(item("shown"));
        EXPECT_FALSE(item(".not"));
    }

    class PreferencePanes : public WorldTest { };

    TEST_F(PreferencePanes, AreTitledByTheirDisplayNames)
    {
        const auto pane = [this](const std::string& name, const std::string& entries) {
            world.files.writeFile("p/" + name + "/Contents/Info.plist",
                                  "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + entries + "</dict></plist>");
        };
        pane("DateAndTime.prefPane", "<key>CFBundleName</key><string>no</string>");
        pane("a.prefPane", "<key>CFBundleName</key><string>Zeta</string>");
        pane("b.prefPane", "<key>CFBundleExecutable</key><string>runner</string>");
        pane("c.prefPane", "<key>CFBundleName</key><true/>");
        pane("d.PrefPane", "<key>CFBundleName</key><string>not exactly a pane</string>");
        const auto dv = menuOptionFlagsDv::prefPaneDisplayNames;
        EXPECT_EQ(world.titles("p", {}, dv), (Titles { "c", "d.PrefPane", "Date & Time", "runner", "Zeta" }));
        EXPECT_EQ(world.titles("p"), (Titles { "a", "b", "c", "d.PrefPane", "DateAndTime" }));
        const auto named = world.controller->createRecursiveMenuItem(
            URL::fileURLWithPath(world.files.path("p/a.prefPane")), "Given.app", true, false, {}, dv);
        EXPECT_EQ(named->title(), "Given.app");
    }

} // namespace

} // namespace quillbox
