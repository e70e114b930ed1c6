#include "ApplicationBundles.h"

#include "FileStamp.h"
#include "XdgTree.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <tuple>

namespace quillbox {
namespace {

    using testing::ElementsAre;
    using testing::SizeIs;

    std::string app(std::string_view title)
    {
        return XdgTree::app(title);
    }

    std::uint64_t inodeOf(const XdgTree& tree, const std::string& bundle)
    {
        return FileStamp::of(tree.bundlePath(bundle)).inode;
    }

    // The bundles after the next start of the program.
    std::vector<std::string> update(XdgTree& tree)
    {
        tree.restart();
        tree.update();
        EXPECT_THAT(tree.errors, testing::IsEmpty());
        return tree.bundles();
    }

    struct ApplicationBundlesTest : testing::Test {
        XdgTree tree;
    };

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

    TEST_F(ApplicationBundlesTest, TheMoreImportantDirectoryDecidesForAnId)
    {
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
                                app("Not masked by a dangling link"), "User/Applications/Exported by me.app",
                                "User/Applications/Mine.app"));
        EXPECT_EQ(tree.info("Local/Applications/Deep.app", "CFBundleIdentifier"), "folder-deep-tool.desktop");

        tree.removeEntry("user", "overridden.desktop");
        tree.removeEntry("user", "removed.desktop");
        EXPECT_THAT(update(tree),
                    testing::AllOf(SizeIs(6), testing::Contains("Local/Applications/Machine's.app"),
                                   testing::Contains(app("Removed"))));
    }

    TEST_F(ApplicationBundlesTest, SkipWhatIsNoEntryFile)
    {
        tree.writeApplication("system", "good.desktop", "Good");
        tree.files().makeDirectory("system/applications/folder.desktop");
        tree.files().makeLink("system/applications/loop", ".");
        tree.files().makeLink("system/applications/null.desktop", "/dev/null");
        mkfifo(tree.path("system/applications/pipe.desktop").c_str(), 0600);
        tree.writeApplication("system", "huge.desktop", "Huge", "Comment=" + std::string(2 << 20, 'x'));
        tree.writeApplication("system", "bad\xFFid.desktop", "Bad id");
        tree.writeApplication("system", "notes.txt", "No entry's name");
        tree.writeEntry("system", "binary.desktop", "\x7F\x45LF\x01\x02");
        EXPECT_THAT(update(tree), ElementsAre(app("Good")));
    }

    TEST_F(ApplicationBundlesTest, GiveAwkwardNamesFileNames)
    {
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
                        "System/Applications/" + std::string(232, 'x') + " (long-one.desktop).app", app("Twin"),
                        "System/Applications/Twin (two.desktop).app", "Local/Applications/Twin.app"));
        EXPECT_EQ(tree.info("System/Applications/Input\u2215Output.app", "CFBundleName"), "Input/Output");
        EXPECT_EQ(tree.info(app("Twin"), "CFBundleExecutable"), "program");
    }

    TEST_F(ApplicationBundlesTest, KeepTheirIdentityWhenTheirNameChanges)
    {
        tree.writeApplication("system", "a.desktop", "First");
        tree.writeApplication("system", "b.desktop", "Second");
        update(tree);
        const std::uint64_t first = inodeOf(tree, app("First"));
        const std::uint64_t second = inodeOf(tree, app("Second"));
        ASSERT_NE(first, 0U);

        tree.writeApplication("system", "a.desktop", "Second");
        tree.writeApplication("system", "b.desktop", "First");
        EXPECT_THAT(update(tree), ElementsAre(app("First"), app("Second")));
        EXPECT_EQ(inodeOf(tree, app("Second")), first);
        EXPECT_EQ(inodeOf(tree, app("First")), second);

        // The user's own copy of an entry is still that application.
        tree.writeApplication("user", "a.desktop", "Mine");
        EXPECT_THAT(update(tree), ElementsAre(app("First"), "User/Applications/Mine.app"));
        EXPECT_EQ(inodeOf(tree, "User/Applications/Mine.app"), first);

        // A new twin takes nobody's name.
        tree.writeApplication("system", "aa.desktop", "First");
        EXPECT_THAT(update(tree), testing::Contains("System/Applications/First (aa.desktop).app"));
        EXPECT_EQ(inodeOf(tree, app("First")), second);
    }

    TEST_F(ApplicationBundlesTest, NothingIsTouchedWhereNothingChanged)
    {
        tree.writeApplication("system", "a.desktop", "First", "TryExec=installed");
        tree.writeApplication("user", "folder/b.desktop", "Second");
        tree.settle();
        const auto stamps = [&] {
            std::map<std::string, FileStamp> found;
            for (const auto& entry : std::filesystem::recursive_directory_iterator(tree.environment.bundlesDirectory()))
                found.emplace(entry.path(), FileStamp::of(entry.path()));
            return found;
        };
        tree.update();
        const auto before = stamps();
        tree.update();
        EXPECT_EQ(tree.keeper().generation(), 1U);
        EXPECT_EQ(stamps(), before);
        tree.restart();
        tree.update();
        EXPECT_EQ(tree.keeper().generation(), 0U);
        EXPECT_EQ(stamps(), before);
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
            tree.update();
            ASSERT_THAT(tree.bundles(), ElementsAre(app("A"), app("B")));
            change(tree);
            tree.update();
            Names shown;
            for (const std::string& bundle : tree.bundles())
                shown.push_back(std::filesystem::path(bundle).stem());
            EXPECT_EQ(shown, expected) << name;
        }
    }

    TEST_F(ApplicationBundlesTest, ANewLanguageRenamesThem)
    {
        tree.writeApplication("system", "a.desktop", "Files", "Name[de]=Dateien\nName[pt_BR]=Arquivos");
        tree.settle();
        update(tree);
        const std::uint64_t before = inodeOf(tree, app("Files"));
        for (const auto& [languages, name] : std::vector<std::pair<std::vector<std::string>, std::string>> {
                 { { "de_AT.UTF-8", "de_AT", "de", "C" }, "Dateien" },
                 { { "pt_BR", "pt", "de", "C" }, "Arquivos" },
                 { { "en_GB", "en", "C" }, "Files" },
                 { { "fr", "C", "de" }, "Files" } }) {
            tree.environment.languages = languages;
            EXPECT_THAT(update(tree), ElementsAre(app(name)));
            EXPECT_EQ(inodeOf(tree, app(name)), before);
        }
    }

    TEST_F(ApplicationBundlesTest, LeaveAloneWhatTheyDidNotMakeAndClearUpWhatTheyDid)
    {
        tree.writeApplication("system", "a.desktop", "A");
        const std::string own = "user/quillbox/bundles/System/Applications/";
        tree.files().writeFile(own + "A.app/Contents/MacOS/mine", "kept");
        tree.files().writeFile(own + "note.txt", "kept");
        tree.files().writeFile(own + ".unfinished-abc/Contents/Info.plist", "half");
        tree.files().makeDirectory(own + "Gone.app/Contents");
        EXPECT_THAT(update(tree),
                    ElementsAre("System/Applications/A (a.desktop).app", app("A"), "System/Applications/note.txt"));
        EXPECT_EQ(tree.files().readFile(own + "A.app/Contents/MacOS/mine"), "kept");
    }

    TEST_F(ApplicationBundlesTest, AreMendedAfterDamage)
    {
        tree.writeApplication("system", "a.desktop", "A");
        tree.settle();
        update(tree);
        const std::uint64_t before = inodeOf(tree, app("A"));
        for (const char* damage : { "", "bplist00 and no more" }) {
            tree.files().writeFile("user/quillbox/bundles/System/Applications/A.app/Contents/Info.plist", damage);
            for (const char* state : { "", "quillbox bundles 1", "no record" }) {
                tree.files().writeFile("user/quillbox/bundles/state", std::string(state) + '\0' + "7");
                EXPECT_THAT(update(tree), ElementsAre(app("A")));
            }
            EXPECT_EQ(tree.info(app("A"), "CFBundleIdentifier"), "a.desktop");
            EXPECT_EQ(inodeOf(tree, app("A")), before);
        }
    }

    TEST_F(ApplicationBundlesTest, ReportOnceThatTheyCannotBeWritten)
    {
        tree.writeApplication("system", "a.desktop", "A");
        tree.files().writeFile("user/quillbox", "a file where a directory should be");
        tree.update();
        const std::size_t count = tree.errors.size();
        ASSERT_GE(count, 1U);
        tree.update();
        EXPECT_THAT(tree.errors, SizeIs(count));
        std::filesystem::remove(tree.path("user/quillbox"));
        tree.update();
        EXPECT_THAT(tree.bundles(), ElementsAre(app("A")));
        EXPECT_THAT(tree.errors, SizeIs(count));
    }

} // namespace
} // namespace quillbox
