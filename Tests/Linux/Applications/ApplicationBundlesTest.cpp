#include "ApplicationBundles.h"

#include "XdgTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <tuple>

namespace quillbox {
namespace {

    using testing::ElementsAre;
    using testing::SizeIs;

    ino_t inodeOf(const std::string& path)
    {
        struct stat status { };
        return stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
    }

    std::vector<std::string> update(XdgTree& tree)
    {
        ApplicationBundles(tree.environment, [](const Error& error) {
            ADD_FAILURE() << error.description();
        }).bringUpToDate();
        return tree.bundles();
    }

    TEST(ApplicationBundles, EntriesDecideWhetherThereIsOne)
    {
        // clang-format off
        const std::tuple<const char*, std::string, bool> cases[] = {
            { "hidden", "Name=A\nExec=a\nHidden=true", false },
            { "not displayed", "Name=A\nExec=a\nNoDisplay=true", false },
            { "only in this desktop", "Name=A\nExec=a\nOnlyShowIn=KDE;GNOME;", true },
            { "only in another", "Name=A\nExec=a\nOnlyShowIn=KDE;", false },
            { "only in none", "Name=A\nExec=a\nOnlyShowIn=", false },
            { "not in this desktop", "Name=A\nExec=a\nNotShowIn=GNOME;", false },
            { "the more specific name decides", "Name=A\nExec=a\nOnlyShowIn=ubuntu;\nNotShowIn=GNOME;", true },
            { "program missing", "Name=A\nExec=a\nTryExec=missing", false },
            { "link", "Type=Link\nName=A\nExec=a\nURL=file:///", false },
            { "no name", "Exec=a", false },
            { "blank name", "Name=\\s\\n\nExec=a", false },
            { "name of other bytes", "Name=\xFF\xFE\nExec=a", false },
            { "no command", "Name=A", false },
            { "activatable", "Name=A\nDBusActivatable=true", true },
        };
        // clang-format on
        for (const auto& [name, lines, isShown] : cases) {
            XdgTree tree;
            tree.environment.desktops = { "ubuntu", "GNOME" };
            std::string entry = "[Desktop Entry]\n";
            if (!lines.starts_with("Type="))
                entry += "Type=Application\n";
            tree.writeEntry("system", "case.desktop", entry.append(lines).append("\n"));
            EXPECT_THAT(update(tree), SizeIs(isShown ? 1 : 0)) << name;
        }
    }

    TEST(ApplicationBundles, TheMoreImportantDirectoryDecidesForAnId)
    {
        XdgTree tree;
        const std::string exports = "user/flatpak/exports/share";
        tree.environment.dataDirectories.insert(tree.environment.dataDirectories.begin(), tree.path(exports));
        tree.writeApplication(exports, "mine.desktop", "Exported by me");
        tree.writeApplication("flatpak", "exported.desktop", "Exported");
        tree.writeApplication("system", "overridden.desktop", "System's");
        tree.writeApplication("local", "overridden.desktop", "Machine's");
        tree.writeApplication("user", "overridden.desktop", "Mine");
        tree.writeApplication("system", "removed.desktop", "Removed");
        tree.writeEntry("user", "removed.desktop", "[Desktop Entry]\nHidden=true\n");
        tree.writeApplication("system", "folder-deep-tool.desktop", "Flat");
        tree.writeApplication("local", "folder/deep/tool.desktop", "Deep");
        tree.writeApplication("system", "dangling.desktop", "Not masked by a dangling link");
        tree.files().makeLink("user/applications/dangling.desktop", "/no/such/entry");
        EXPECT_THAT(update(tree),
                    ElementsAre("Local/Applications/Deep.app", "Local/Applications/Exported.app",
                                "System/Applications/Not masked by a dangling link.app",
                                "User/Applications/Exported by me.app", "User/Applications/Mine.app"));
        EXPECT_EQ(tree.info("Local/Applications/Deep.app", "CFBundleIdentifier"), "folder-deep-tool.desktop");

        tree.removeEntry("user", "overridden.desktop");
        tree.removeEntry("user", "removed.desktop");
        EXPECT_THAT(update(tree),
                    testing::AllOf(SizeIs(6), testing::Contains("Local/Applications/Machine's.app"),
                                   testing::Contains("System/Applications/Removed.app")));
    }

    TEST(ApplicationBundles, SkipWhatIsNoEntryFile)
    {
        XdgTree tree;
        tree.writeApplication("system", "good.desktop", "Good");
        tree.files().makeDirectory("system/applications/folder.desktop");
        tree.files().makeLink("system/applications/loop", ".");
        tree.files().makeLink("system/applications/null.desktop", "/dev/null");
        mkfifo(tree.path("system/applications/pipe.desktop").c_str(), 0600);
        tree.writeApplication("system", "huge.desktop", "Huge", "Comment=" + std::string(2 << 20, 'x'));
        tree.writeApplication("system", "bad\xFFid.desktop", "Bad id");
        tree.writeApplication("system", "notes.txt", "No entry's name");
        tree.writeEntry("system", "binary.desktop", "\x7F\x45LF\x01\x02");
        EXPECT_THAT(update(tree), ElementsAre("System/Applications/Good.app"));
    }

    TEST(ApplicationBundles, GiveAwkwardNamesFileNames)
    {
        XdgTree tree;
        const std::string longName = std::string(249, 'x') + "ééé";
        tree.writeApplication("system", "a.desktop", "Input/Output");
        tree.writeApplication("system", "b.desktop", ".hidden");
        tree.writeApplication("system", "c.desktop", longName);
        tree.writeApplication("system", "one.desktop", "Twin");
        tree.writeApplication("system", "two.desktop", "Twin");
        tree.writeApplication("local", "other.desktop", "Twin");
        tree.writeApplication("system", "long-one.desktop", longName);
        EXPECT_THAT(update(tree),
                    testing::UnorderedElementsAre(
                        "System/Applications/Input\u2215Output.app", "System/Applications/\u200E.hidden.app",
                        "System/Applications/" + std::string(249, 'x') + "é.app",
                        "System/Applications/" + std::string(232, 'x') + " (long-one.desktop).app",
                        "System/Applications/Twin.app", "System/Applications/Twin (two.desktop).app",
                        "Local/Applications/Twin.app"));
        EXPECT_EQ(tree.info("System/Applications/Input\u2215Output.app", "CFBundleName"), "Input/Output");
        EXPECT_EQ(tree.info("System/Applications/Twin.app", "CFBundleExecutable"), "program");
    }

    TEST(ApplicationBundles, KeepTheirIdentityWhenTheirNameChanges)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "First");
        tree.writeApplication("system", "b.desktop", "Second");
        update(tree);
        const ino_t first = inodeOf(tree.bundlePath("System/Applications/First.app"));
        const ino_t second = inodeOf(tree.bundlePath("System/Applications/Second.app"));
        ASSERT_NE(first, 0U);

        tree.writeApplication("system", "a.desktop", "Second");
        tree.writeApplication("system", "b.desktop", "First");
        EXPECT_THAT(update(tree), ElementsAre("System/Applications/First.app", "System/Applications/Second.app"));
        EXPECT_EQ(inodeOf(tree.bundlePath("System/Applications/Second.app")), first);
        EXPECT_EQ(inodeOf(tree.bundlePath("System/Applications/First.app")), second);

        // The user's own copy of an entry is still that application.
        tree.writeApplication("user", "a.desktop", "Mine");
        EXPECT_THAT(update(tree), ElementsAre("System/Applications/First.app", "User/Applications/Mine.app"));
        EXPECT_EQ(inodeOf(tree.bundlePath("User/Applications/Mine.app")), first);

        // A new twin takes nobody's name.
        tree.writeApplication("system", "aa.desktop", "First");
        EXPECT_THAT(update(tree), testing::Contains("System/Applications/First (aa.desktop).app"));
        EXPECT_EQ(inodeOf(tree.bundlePath("System/Applications/First.app")), second);
    }

    TEST(ApplicationBundles, NothingIsTouchedWhereNothingChanged)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "First", "TryExec=installed");
        tree.writeApplication("user", "folder/b.desktop", "Second");
        tree.settle();
        ApplicationBundles bundles(tree.environment, nullptr);
        bundles.bringUpToDate();
        const auto before = tree.fingerprint();
        bundles.bringUpToDate();
        EXPECT_EQ(bundles.generation(), 1U);
        EXPECT_EQ(tree.fingerprint(), before);

        ApplicationBundles afterRestart(tree.environment, nullptr);
        afterRestart.bringUpToDate();
        EXPECT_EQ(afterRestart.generation(), 0U);
        EXPECT_EQ(tree.fingerprint(), before);
    }

    TEST(ApplicationBundles, NoticeChanges)
    {
        using Names = std::vector<std::string>;
        // clang-format off
        const std::tuple<const char*, void (*)(XdgTree&), Names> cases[] = {
            { "new folder", [](XdgTree& tree) { tree.writeApplication("system", "new/c.desktop", "C"); },
              { "A", "B", "C" } },
            { "first entry of a directory", [](XdgTree& tree) { tree.writeApplication("flatpak", "c.desktop", "C"); },
              { "C", "A", "B" } },
            { "removed entry", [](XdgTree& tree) { tree.removeEntry("system", "a.desktop"); }, { "B" } },
            { "changed entry", [](XdgTree& tree) { tree.writeApplication("system", "a.desktop", "Z"); }, { "B", "Z" } },
            { "program installed", [](XdgTree& tree) { tree.writeProgram("helper"); }, { "A", "B", "Needs" } },
            { "program removed", [](XdgTree& tree) { tree.files().remove("bin/installed"); }, { "A" } },
            { "everything removed", [](XdgTree& tree) {
                  std::filesystem::remove_all(tree.environment.bundlesDirectory()); }, { "A", "B" } },
        };
        // clang-format on
        for (const auto& [name, change, expected] : cases) {
            XdgTree tree;
            tree.writeApplication("system", "a.desktop", "A");
            tree.writeApplication("system", "needs.desktop", "Needs", "TryExec=helper");
            tree.writeProgram("installed");
            tree.writeApplication("system", "folder/b.desktop", "B", "TryExec=installed");
            tree.settle();
            ApplicationBundles bundles(tree.environment, nullptr);
            bundles.bringUpToDate();
            ASSERT_THAT(tree.bundles(), ElementsAre("System/Applications/A.app", "System/Applications/B.app"));
            change(tree);
            bundles.bringUpToDate();
            Names shown;
            for (const std::string& bundle : tree.bundles())
                shown.push_back(std::filesystem::path(bundle).stem());
            EXPECT_EQ(shown, expected) << name;
        }
    }

    TEST(ApplicationBundles, ANewLanguageRenamesThem)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "Files", "Name[de]=Dateien\nName[pt_BR]=Arquivos");
        tree.settle();
        update(tree);
        const ino_t before = inodeOf(tree.bundlePath("System/Applications/Files.app"));
        for (const auto& [languages, name] : std::vector<std::pair<std::vector<std::string>, std::string>> {
                 { { "de_AT.UTF-8", "de_AT", "de", "C" }, "Dateien" },
                 { { "pt_BR", "pt", "de", "C" }, "Arquivos" },
                 { { "en_GB", "en", "C" }, "Files" },
                 { { "fr", "C", "de" }, "Files" } }) {
            tree.environment.languages = languages;
            EXPECT_THAT(update(tree), ElementsAre("System/Applications/" + name + ".app"));
            EXPECT_EQ(inodeOf(tree.bundlePath("System/Applications/" + name + ".app")), before);
        }
    }

    TEST(ApplicationBundles, LeaveAloneWhatTheyDidNotMakeAndClearUpWhatTheyDid)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "A");
        const std::string own = "user/quillbox/bundles/System/Applications/";
        tree.files().writeFile(own + "A.app/Contents/MacOS/mine", "kept");
        tree.files().writeFile(own + "note.txt", "kept");
        tree.files().writeFile(own + ".unfinished-abc/Contents/Info.plist", "half");
        tree.files().makeDirectory(own + "Gone.app/Contents");
        EXPECT_THAT(update(tree),
                    ElementsAre("System/Applications/A (a.desktop).app", "System/Applications/A.app",
                                "System/Applications/note.txt"));
        EXPECT_EQ(tree.files().readFile(own + "A.app/Contents/MacOS/mine"), "kept");
    }

    TEST(ApplicationBundles, AreMendedAfterDamage)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "A");
        tree.settle();
        update(tree);
        const std::string bundle = tree.bundlePath("System/Applications/A.app");
        const ino_t before = inodeOf(bundle);
        for (const char* damage : { "", "bplist00 and no more" }) {
            tree.files().writeFile("user/quillbox/bundles/System/Applications/A.app/Contents/Info.plist", damage);
            for (const char* state : { "", "quillbox bundles 1", "no record" }) {
                tree.files().writeFile("user/quillbox/bundles/state", std::string(state) + '\0' + "7");
                EXPECT_THAT(update(tree), ElementsAre("System/Applications/A.app"));
            }
            EXPECT_EQ(tree.info("System/Applications/A.app", "CFBundleIdentifier"), "a.desktop");
            EXPECT_EQ(inodeOf(bundle), before);
        }
    }

    TEST(ApplicationBundles, ReportOnceThatTheyCannotBeWritten)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "A");
        tree.files().writeFile("user/quillbox", "a file where a directory should be");
        ErrorLog log;
        ApplicationBundles bundles(tree.environment, log.callback());
        bundles.bringUpToDate();
        const std::size_t count = log.errors.size();
        ASSERT_GE(count, 1U);
        bundles.bringUpToDate();
        EXPECT_THAT(log.errors, SizeIs(count));
        std::filesystem::remove(tree.path("user/quillbox"));
        bundles.bringUpToDate();
        EXPECT_THAT(tree.bundles(), ElementsAre("System/Applications/A.app"));
        EXPECT_THAT(log.errors, SizeIs(count));
    }

} // namespace
} // namespace quillbox
