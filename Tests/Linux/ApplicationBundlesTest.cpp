#include "ApplicationBundles.h"

#include "Unprivileged.h"
#include "XdgTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

namespace quillbox {
namespace {

    using testing::ElementsAre;
    using testing::IsEmpty;
    using testing::SizeIs;

    ino_t inodeOf(const std::string& path)
    {
        struct stat status { };
        return stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
    }

    std::vector<std::string> update(XdgTree& tree)
    {
        ErrorLog log;
        ApplicationBundles(tree.environment, log.callback()).bringUpToDate();
        for (const Error& error : log.errors)
            ADD_FAILURE() << error.description();
        return tree.bundles();
    }

    struct EntryCase {
        const char* name;
        const char* text;
        bool isShown;
        friend void PrintTo(const EntryCase& row, std::ostream* out) { *out << row.name; }
    };

    class EntryRules : public testing::TestWithParam<EntryCase> { };

    TEST_P(EntryRules, DecideWhetherThereIsABundle)
    {
        XdgTree tree;
        tree.environment.desktops = { "ubuntu", "GNOME" };
        tree.writeProgram("installed");
        tree.writeEntry("system", "case.desktop", GetParam().text);
        EXPECT_THAT(update(tree), SizeIs(GetParam().isShown ? 1 : 0));
    }

    // clang-format off
#define APPLICATION "[Desktop Entry]\nType=Application\nName=Case\nExec=case\n"
    INSTANTIATE_TEST_SUITE_P(Table, EntryRules, testing::Values(
        EntryCase { "Plain", APPLICATION, true },
        EntryCase { "Hidden", APPLICATION "Hidden=true\n", false },
        EntryCase { "NoDisplay", APPLICATION "NoDisplay=true\n", false },
        EntryCase { "OnlyShowInThisDesktop", APPLICATION "OnlyShowIn=KDE;GNOME;\n", true },
        EntryCase { "OnlyShowInAnother", APPLICATION "OnlyShowIn=KDE;\n", false },
        EntryCase { "OnlyShowInNothing", APPLICATION "OnlyShowIn=\n", false },
        EntryCase { "NotShowInThisDesktop", APPLICATION "NotShowIn=GNOME;\n", false },
        EntryCase { "NotShowInAnother", APPLICATION "NotShowIn=KDE\n", true },
        EntryCase { "TheMoreSpecificNameDecides", APPLICATION "OnlyShowIn=ubuntu;\nNotShowIn=GNOME;\n", true },
        EntryCase { "TryExecInstalled", APPLICATION "TryExec=installed\n", true },
        EntryCase { "TryExecMissing", APPLICATION "TryExec=missing\n", false },
        EntryCase { "Link", "[Desktop Entry]\nType=Link\nName=Case\nURL=file:///\n", false },
        EntryCase { "NoName", "[Desktop Entry]\nType=Application\nExec=case\n", false },
        EntryCase { "BlankName", "[Desktop Entry]\nType=Application\nExec=case\nName=\\s\\n\n", false },
        EntryCase { "NoExec", "[Desktop Entry]\nType=Application\nName=Case\n", false },
        EntryCase { "Activatable", "[Desktop Entry]\nType=Application\nName=Case\nDBusActivatable=true\n", true },
        EntryCase { "NameNotUTF8", "[Desktop Entry]\nType=Application\nName=\xFF\xFE\nExec=case\n", false },
        EntryCase { "NoEntryAtAll", "\x7F" "ELF\x01\x02", false }),
        [](const auto& row) { return std::string(row.param.name); });
    // clang-format on

    TEST(ApplicationBundles, SortsEntriesIntoTheirDomains)
    {
        XdgTree tree;
        tree.environment.dataDirectories.push_back(tree.path("user/flatpak/exports/share"));
        tree.writeApplication("system", "a.desktop", "Of the system");
        tree.writeApplication("local", "b.desktop", "Of the machine");
        tree.writeApplication("flatpak", "c.desktop", "Exported");
        tree.writeApplication("user", "d.desktop", "Of the user");
        tree.writeApplication("user/flatpak/exports/share", "e.desktop", "Exported by the user");
        EXPECT_THAT(update(tree),
                    ElementsAre("Local/Applications/Exported.app", "Local/Applications/Of the machine.app",
                                "System/Applications/Of the system.app", "User/Applications/Exported by the user.app",
                                "User/Applications/Of the user.app"));
        for (const char* domain : { "System", "Local", "User" }) {
            EXPECT_TRUE(std::filesystem::is_directory(tree.bundlePath(std::string(domain) + "/PreferencePanes")));
        }
    }

    TEST(ApplicationBundles, SayWhatTheirEntrySays)
    {
        XdgTree tree;
        const std::string entry = tree.writeEntry(
            "system", "org.example.Draw.desktop",
            "[Desktop Entry]\nType=Application\nName=Draw\nName[de]=Zeichnen\nExec=\"draw it\" --new %F\n");
        EXPECT_THAT(update(tree), ElementsAre("System/Applications/Draw.app"));
        const char* bundle = "System/Applications/Draw.app";
        EXPECT_EQ(tree.info(bundle, "CFBundleName"), "Draw");
        EXPECT_EQ(tree.info(bundle, "CFBundleIdentifier"), "org.example.Draw.desktop");
        EXPECT_EQ(tree.info(bundle, "CFBundleExecutable"), "draw it");
        ApplicationBundles bundles(tree.environment, nullptr);
        EXPECT_EQ(bundles.entryOfBundle(tree.bundlePath(bundle)), entry);
        EXPECT_EQ(bundles.entryOfBundle(tree.path("user")), std::nullopt);
    }

    TEST(ApplicationBundles, TheMoreImportantDirectoryDecidesForAnId)
    {
        XdgTree tree;
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
                    ElementsAre("Local/Applications/Deep.app", "System/Applications/Not masked by a dangling link.app",
                                "User/Applications/Mine.app"));
        EXPECT_EQ(tree.info("Local/Applications/Deep.app", "CFBundleIdentifier"), "folder-deep-tool.desktop");

        tree.removeEntry("user", "overridden.desktop");
        tree.removeEntry("user", "removed.desktop");
        EXPECT_THAT(update(tree),
                    ElementsAre("Local/Applications/Deep.app", "Local/Applications/Machine's.app",
                                "System/Applications/Not masked by a dangling link.app",
                                "System/Applications/Removed.app"));
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
        EXPECT_THAT(update(tree), ElementsAre("System/Applications/Good.app"));
    }

    TEST(ApplicationBundles, GiveAwkwardNamesFileNames)
    {
        XdgTree tree;
        const std::string longName = std::string(249, 'x') + "ééé";
        tree.writeApplication("system", "a.desktop", "Input/Output");
        tree.writeApplication("system", "b.desktop", ".hidden");
        tree.writeApplication("system", "c.desktop", longName);
        tree.writeApplication("system", "d.desktop", "Two\\nlines & more");
        tree.writeApplication("system", "one.desktop", "Twin");
        tree.writeApplication("system", "two.desktop", "Twin");
        tree.writeApplication("local", "other.desktop", "Twin");
        tree.writeApplication("system", "long-one.desktop", longName);
        EXPECT_THAT(update(tree),
                    testing::UnorderedElementsAre(
                        "System/Applications/Input\u2215Output.app", "System/Applications/\u200E.hidden.app",
                        "System/Applications/" + std::string(249, 'x') + "é.app",
                        "System/Applications/" + std::string(232, 'x') + " (long-one.desktop).app",
                        "System/Applications/Two\nlines & more.app", "System/Applications/Twin.app",
                        "System/Applications/Twin (two.desktop).app", "Local/Applications/Twin.app"));
        EXPECT_EQ(tree.info("System/Applications/Input\u2215Output.app", "CFBundleName"), "Input/Output");
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
        EXPECT_EQ(tree.info("System/Applications/Second.app", "CFBundleName"), "Second");

        // The user's own copy of an entry is still that application.
        tree.writeApplication("user", "a.desktop", "Mine");
        EXPECT_THAT(update(tree), ElementsAre("System/Applications/First.app", "User/Applications/Mine.app"));
        EXPECT_EQ(inodeOf(tree.bundlePath("User/Applications/Mine.app")), first);
    }

    TEST(ApplicationBundles, ANewTwinTakesNobodysName)
    {
        XdgTree tree;
        tree.writeApplication("system", "m.desktop", "Twin");
        update(tree);
        const ino_t before = inodeOf(tree.bundlePath("System/Applications/Twin.app"));
        tree.writeApplication("system", "a.desktop", "Twin");
        EXPECT_THAT(update(tree),
                    ElementsAre("System/Applications/Twin (a.desktop).app", "System/Applications/Twin.app"));
        EXPECT_EQ(inodeOf(tree.bundlePath("System/Applications/Twin.app")), before);
    }

    TEST(ApplicationBundles, NothingIsTouchedWhereNothingChanged)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "First", "TryExec=installed");
        tree.writeApplication("user", "folder/b.desktop", "Second");
        tree.settle();
        ErrorLog log;
        ApplicationBundles bundles(tree.environment, log.callback());
        bundles.bringUpToDate();
        const auto before = tree.fingerprint();
        bundles.bringUpToDate();
        EXPECT_EQ(bundles.generation(), 1U);
        EXPECT_EQ(tree.fingerprint(), before);

        ApplicationBundles afterRestart(tree.environment, log.callback());
        afterRestart.bringUpToDate();
        EXPECT_EQ(afterRestart.generation(), 0U);
        EXPECT_EQ(tree.fingerprint(), before);

        // Without the record, what is there is compared and found right.
        std::filesystem::remove(tree.bundlePath("state"));
        ApplicationBundles withoutRecord(tree.environment, log.callback());
        withoutRecord.bringUpToDate();
        EXPECT_EQ(withoutRecord.generation(), 1U);
        std::filesystem::remove(tree.bundlePath("state"));
        auto bundlesOnly = before;
        std::erase_if(bundlesOnly, [](const std::string& line) { return line.find("/bundles/state ") != line.npos; });
        EXPECT_EQ(tree.fingerprint(), bundlesOnly);
        EXPECT_THAT(log.errors, IsEmpty());
    }

    struct ChangeCase {
        const char* name;
        void (*change)(XdgTree&);
        std::vector<std::string> expected;
        friend void PrintTo(const ChangeCase& row, std::ostream* out) { *out << row.name; }
    };

    class BundlesNotice : public testing::TestWithParam<ChangeCase> { };

    TEST_P(BundlesNotice, TheChange)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "A");
        tree.writeApplication("system", "needs.desktop", "Needs", "TryExec=helper");
        tree.writeProgram("installed");
        tree.writeApplication("system", "folder/b.desktop", "B", "TryExec=installed");
        tree.settle();
        ErrorLog log;
        ApplicationBundles bundles(tree.environment, log.callback());
        bundles.bringUpToDate();
        ASSERT_THAT(tree.bundles(), ElementsAre("System/Applications/A.app", "System/Applications/B.app"));
        GetParam().change(tree);
        bundles.bringUpToDate();
        std::vector<std::string> shown;
        for (const std::string& bundle : tree.bundles())
            shown.push_back(std::filesystem::path(bundle).stem());
        EXPECT_EQ(shown, GetParam().expected);
        EXPECT_THAT(log.errors, IsEmpty());
    }

    // clang-format off
    INSTANTIATE_TEST_SUITE_P(Table, BundlesNotice, testing::Values(
        ChangeCase { "NewEntry", [](XdgTree& tree) { tree.writeApplication("system", "c.desktop", "C"); },
                     { "A", "B", "C" } },
        ChangeCase { "NewEntryInAFolder",
                     [](XdgTree& tree) { tree.writeApplication("system", "folder/c.desktop", "C"); },
                     { "A", "B", "C" } },
        ChangeCase { "NewFolder", [](XdgTree& tree) { tree.writeApplication("system", "new/c.desktop", "C"); },
                     { "A", "B", "C" } },
        ChangeCase { "FirstEntryOfADirectory",
                     [](XdgTree& tree) { tree.writeApplication("flatpak", "c.desktop", "C"); }, { "C", "A", "B" } },
        ChangeCase { "RemovedEntry", [](XdgTree& tree) { tree.removeEntry("system", "a.desktop"); }, { "B" } },
        ChangeCase { "ChangedEntry", [](XdgTree& tree) { tree.writeApplication("system", "a.desktop", "Other"); },
                     { "B", "Other" } },
        ChangeCase { "ProgramInstalled", [](XdgTree& tree) { tree.writeProgram("helper"); }, { "A", "B", "Needs" } },
        ChangeCase { "ProgramRemoved", [](XdgTree& tree) { tree.files().remove("bin/installed"); }, { "A" } },
        ChangeCase { "BundleRemoved", [](XdgTree& tree) {
                         std::filesystem::remove_all(tree.bundlePath("System/Applications/A.app")); }, { "A", "B" } },
        ChangeCase { "EverythingRemoved", [](XdgTree& tree) {
                         std::filesystem::remove_all(tree.environment.bundlesDirectory()); }, { "A", "B" } }),
        [](const auto& row) { return std::string(row.param.name); });
    // clang-format on

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
        EXPECT_GE(count, 1U);
        bundles.bringUpToDate();
        EXPECT_THAT(log.errors, SizeIs(count));
        std::filesystem::remove(tree.path("user/quillbox"));
        bundles.bringUpToDate();
        EXPECT_THAT(tree.bundles(), ElementsAre("System/Applications/A.app"));
        EXPECT_THAT(log.errors, SizeIs(count));
    }

    TEST(ApplicationBundles, ReportWhatTheUserMayNotWrite)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "A");
        // The owner may not either: tests run as an ordinary user, too.
        std::filesystem::permissions(tree.path(), std::filesystem::perms(0555));
        EXPECT_THAT(runWithoutPrivileges([&] {
                        ErrorLog log;
                        ApplicationBundles(tree.environment, log.callback()).bringUpToDate();
                        return log.errors.empty() ? std::string("nothing") : log.errors.front().description();
                    }),
                    testing::HasSubstr("Permission denied"));
        std::filesystem::permissions(tree.path(), std::filesystem::perms(0755));
    }

} // namespace
} // namespace quillbox
