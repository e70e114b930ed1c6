#include "RecentUseIndex.h"

#include "FileStamp.h"
#include "ManualClock.h"
#include "XdgTree.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sqlite3.h>
#include <utility>

namespace quillbox {
namespace {

    namespace fs = std::filesystem;
    using testing::ElementsAre;
    using testing::IsEmpty;

    // 2023-11-14 22:13:20 UTC.
    constexpr double kNow = 1'700'000'000;
    constexpr const char* kMayFirst = "2023-05-01T00:00:00Z";
    constexpr const char* kListFile = "user/recently-used.xbel";
    constexpr const char* kDatabaseFile = "user/kactivitymanagerd/resources/database";
    constexpr const char* kOwnFile = "user/quillbox/recent-use.plist";

    // An index over records in a home of the test's own.
    class RecentUse : public testing::Test {
    protected:
        RecentUse() { restart(); }

        void restart()
        {
            index.reset();
            tree.restart();
            errors.clear();
            index = std::make_unique<RecentUseIndex>(tree.keeper(),
                                                     [this](const Error& error) { errors.push_back(error); });
        }
        // Applications by their bundle's path within the directory of bundles.
        std::vector<std::string> used(double from = 1, double until = kNow + 86'400)
        {
            auto paths = index->pathsLastUsed(Date::sinceUnixEpoch(from), Date::sinceUnixEpoch(until));
            const std::string bundlesPrefix = tree.environment.bundlesDirectory() + '/';
            for (std::string& path : paths) {
                if (path.starts_with(bundlesPrefix))
                    path.erase(0, bundlesPrefix.size());
            }
            return paths;
        }
        void writeList(const std::string& bookmarks, std::string_view end = "</xbel>\n")
        {
            tree.files().writeFile(kListFile,
                                   "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xbel version=\"1.0\">\n" + bookmarks
                                       + std::string(end));
        }

        XdgTree tree;
        ManualClock clock { Date::sinceUnixEpoch(kNow) };
        std::vector<Error> errors;
        std::unique_ptr<RecentUseIndex> index;
    };

    // A bookmark as GTK writes it.
    std::string bookmark(const std::string& href, const std::string& date, const std::string& more = {})
    {
        return "<bookmark href=\"" + href + "\" added=\"2020-01-01T00:00:00.123456Z\" modified=\"" + date
            + "\" visited=\"1969-12-31T23:59:59Z\"><info><metadata owner=\"http://freedesktop.org\">"
              "<mime:mime-type type=\"text/plain\"/>"
            + more + "</metadata></info></bookmark>\n";
    }

    const std::string kLate = bookmark("file:///late", kMayFirst);

    TEST_F(RecentUse, TheDesktopsListTellsFilesOldestFirst)
    {
        const auto visited = [](const std::string& name, const std::string& date) {
            return "<bookmark href='file:///" + name + "' visited='" + date + "'/>";
        };
        struct {
            const char* name;
            std::string bookmarks;
            std::vector<std::string> files;
            const char* end = "</xbel>\n";
        } const cases[] = {
            { "newest of the three stamps",
              kLate
                  + "<bookmark href='file:///added' added='2023-05-03T00:00:00Z'/>"
                    "<bookmark href='file:///visited' modified='2023-01-01T00:00:00Z' visited='2023-05-02T00:00:00Z'/>",
              { "/late", "/visited", "/added" } },
            { "dates in every form",
              visited("4", "2023-04-30T23:00:00.5-02:00") + visited("2", "2023-05-01T00:00:00.25Z")
                  + visited("1", "2023-05-01T01:30:00+02:00") + visited("3", "20230501T000001Z"),
              { "/1", "/2", "/3", "/4" } },
            { "odd dates",
              "<bookmark href='file:///none'/><bookmark visited='2023-05-01T00:00:00Z'/>" + visited("word", "yesterday")
                  + visited("before", "1969-12-31T23:59:59Z") + visited("month", "2023-13-01T00:00:00Z")
                  + visited("to-come", "2123-01-01T00:00:00Z") + kLate,
              { "/late" } },
            { "twice in the list, and of other machines",
              bookmark("file:///a", "2023-06-01T00:00:00Z") + bookmark("smb://server/share/a", kMayFirst) + kLate
                  + bookmark("file://localhost/a", "2023-01-01T00:00:00Z") + bookmark("file://server/a", kMayFirst),
              { "/late", "/a" } },
            { "bytes of the path",
              bookmark("file:///%C3%A4%20%2525%FF&amp;b/", "2023-01-01T00:00:00Z")
                  + bookmark("file:///cut%2", kMayFirst) + bookmark("file:///nul%00", kMayFirst) + kLate,
              { "/\xC3\xA4 %25\xFF&b", "/late" } },
            { "others' elements",
              "<title>Recent</title><!-- <bookmark href='file:///comment'/> --><folder><title/></folder>" + kLate
                  + bookmark("file:///secret", kMayFirst, "<bookmark:private/>"),
              { "/late" } },
            { "cut off in a tag", kLate, { "/late" }, "<bookmark href=\"file:///c\" added=\"2023-07-0" },
            { "cut off in a path", kLate, { "/late" }, "<bookmark added=\"2023-07-01T00:00:00Z\" href=\"file:///" },
            { "nothing", "", {}, "" },
        };
        for (const auto& row : cases) {
            restart();
            writeList(row.bookmarks, row.end);
            EXPECT_EQ(used(), row.files) << row.name;
        }
    }

    TEST_F(RecentUse, BothEndsOfTheTimeBelongToIt)
    {
        writeList(bookmark("file:///a", kMayFirst) + bookmark("file:///b", "2023-05-01T00:00:02Z")
                  + bookmark("file:///c", "2023-05-01T00:00:04Z"));
        constexpr double kMay = 1'682'899'200;
        EXPECT_THAT(used(kMay, kMay + 2), ElementsAre("/a", "/b"));
        EXPECT_THAT(used(kMay + 1, kMay + 3.9), ElementsAre("/b"));
        EXPECT_THAT(used(kMay + 5), IsEmpty());
    }

    TEST_F(RecentUse, FindsApplicationsByWhatProgramsCallThem)
    {
        const auto install = [&](const std::string& id, const std::string& name, const std::string& exec) {
            tree.writeEntry("system", id, "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + exec + "\n");
        };
        install("org.gnome.gedit.desktop", "Text Editor", "/usr/bin/gedit %U");
        install("org.kde.kate.desktop", "Kate", "kate -b %U");
        install("gimp.desktop", "GIMP", "gimp-2.10 %U");
        install("writer.desktop", "Writer", "office --writer");
        install("calc.desktop", "Calc", "office --calc");
        install("hidden.desktop", "Hidden", "hidden\nNoDisplay=true");
        const std::pair<const char*, const char*> cases[] = {
            { "name='Text Editor' exec=\"'gedit %u'\"", "Text Editor" }, // as GTK has it
            { "name='org.kde.kate' exec='whatever %u'", "Kate" }, // as KDE has it
            { "name='x' exec=\"'&quot;/opt/some where/gimp&quot; %u'\"", "GIMP" },
            { "name='Calc' exec=\"'office %u'\"", "Calc" },
            { "name='Office' exec=\"'office %u'\"", "" },
            { "name='hidden' exec='hidden'", "" },
            { "exec='&apos;'", "" },
        };
        for (const auto& [attributes, title] : cases) {
            restart();
            writeList(bookmark("https://example.org/", kMayFirst,
                               "<bookmark:applications><bookmark:application " + std::string(attributes)
                                   + " modified='2023-05-01T00:00:00Z' count='1'/></bookmark:applications>"));
            EXPECT_EQ(used(), std::vector<std::string>(*title ? 1 : 0, XdgTree::app(title))) << attributes;
        }
    }

    TEST_F(RecentUse, GnomeNamesApplicationsById)
    {
        for (const char* id : { "a.desktop", "b.desktop", "c.desktop" })
            tree.writeApplication("system", id, std::string(1, *id));
        const std::string applications = "<application id=\"b.desktop\" score=\"2.5\" last-seen=\"1690000000\"/>"
                                         "<application id=\"a.desktop\" score=\"9\" last-seen=\"1690000002\"/>"
                                         "<application id=\"window:7\" last-seen=\"1690000003\"/>"
                                         "<application id=\"c.desktop\" score=\"1\"/>";
        const auto expected = ElementsAre("System/Applications/b.app", "System/Applications/a.app");
        for (const std::string& text : { "<?xml version=\"1.0\"?>\n<application-state>" + applications,
                                         "<application-state><context id=\"\">" + applications + "</context>" }) {
            restart();
            tree.files().writeFile("user/gnome-shell/application_state", text);
            EXPECT_THAT(used(), expected) << text;
        }
    }

    // Plasma's record, open as the desktop has it.
    class PlasmaWriter {
    public:
        explicit PlasmaWriter(const std::string& file)
        {
            fs::create_directories(fs::path(file).parent_path());
            EXPECT_EQ(sqlite3_open(file.c_str(), &database_), SQLITE_OK);
        }
        ~PlasmaWriter() { stop(); }
        PlasmaWriter(const PlasmaWriter&) = delete;
        PlasmaWriter& operator=(const PlasmaWriter&) = delete;

        // Whether all of those statements could be run.
        bool run(const std::string& statements)
        {
            return sqlite3_exec(database_, statements.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
        }
        // Closes the database, as the desktop does at its end.
        void stop() { sqlite3_close(std::exchange(database_, nullptr)); }

    private:
        sqlite3* database_ = nullptr;
    };

    constexpr const char* kSchema =
        "CREATE TABLE ResourceEvent(usedActivity TEXT, initiatingAgent TEXT, targettedResource TEXT, start INTEGER,"
        " end INTEGER);"
        "CREATE TABLE ResourceScoreCache(usedActivity TEXT, initiatingAgent TEXT, targettedResource TEXT,"
        " scoreType INTEGER, cachedScore FLOAT, firstUpdate INTEGER, lastUpdate INTEGER,"
        " PRIMARY KEY(usedActivity, initiatingAgent, targettedResource));"
        "INSERT INTO ResourceScoreCache VALUES ('1', 'org.kde.kate', '/home/me/a', 0, 1.5, 5, 1690000010),"
        " ('2', 'org.kde.okular', '/home/me/a', 0, 1.5, 5, 1690000006),"
        " ('1', 'x', 'https://example.org/', 0, 1, 5, 1690000001), ('1', 'x', '/home/me/never', 0, 1, 0, NULL),"
        " ('1', 'org.kde.plasma', 'applications:org.kde.kate.desktop', 0, 1, 5, 1690000002);"
        "INSERT INTO ResourceEvent VALUES ('1', 'x', '/home/me/b', 1690000004, NULL),"
        " ('1', 'x', '/home/me/c/', 1690000005, 1690000008), ('1', 'x', 'file:///home/me/d%20e', 1690000003, 0);";
    const auto kPlasmaUses =
        ElementsAre("System/Applications/Kate.app", "/home/me/d e", "/home/me/b", "/home/me/c", "/home/me/a");

    std::string addition(const char* path)
    {
        return "INSERT INTO ResourceEvent VALUES ('1', 'x', '" + std::string(path) + "', 1690000020, 1690000020);";
    }

    class PlasmaRecord : public RecentUse {
    protected:
        PlasmaRecord() : writer(tree.path(kDatabaseFile))
        {
            tree.writeEntry("system", "org.kde.kate.desktop",
                            "[Desktop Entry]\nType=Application\nName=Kate\nExec=kate\n");
        }
        PlasmaWriter writer;
    };

    TEST_F(PlasmaRecord, IsReadWhileItIsBeingWritten)
    {
        ASSERT_TRUE(writer.run("PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0;"));
        ASSERT_TRUE(writer.run(kSchema));
        EXPECT_THAT(used(), kPlasmaUses) << "all of it is in the log";
        ASSERT_TRUE(writer.run("BEGIN IMMEDIATE;" + addition("/home/me/new")));
        EXPECT_THAT(used(), kPlasmaUses);
        ASSERT_TRUE(writer.run("COMMIT"));
        EXPECT_EQ(used().back(), "/home/me/new");
        ASSERT_TRUE(writer.run("PRAGMA wal_checkpoint(TRUNCATE);" + addition("/home/me/newer"))) << "nothing holds it";
        EXPECT_EQ(used().back(), "/home/me/newer");
    }

    TEST_F(PlasmaRecord, IsLeftAsItIsWhenNobodyHasItOpen)
    {
        for (const char* mode : { "WAL", "DELETE" }) {
            fs::remove(tree.path(kDatabaseFile));
            PlasmaWriter once(tree.path(kDatabaseFile));
            ASSERT_TRUE(once.run("PRAGMA journal_mode = " + std::string(mode)) && once.run(kSchema));
            once.stop();
            const FileStamp before = FileStamp::of(tree.path(kDatabaseFile));
            EXPECT_THAT(used(), kPlasmaUses) << mode;
            EXPECT_EQ(std::distance(fs::directory_iterator(fs::path(tree.path(kDatabaseFile)).parent_path()), {}), 1);
            EXPECT_EQ(FileStamp::of(tree.path(kDatabaseFile)), before) << mode;
        }
    }

    TEST_F(RecentUse, APlasmaRecordThatWasLeftHalfWrittenIsNotMended)
    {
        PlasmaWriter crashing(tree.path("elsewhere/database"));
        ASSERT_TRUE(crashing.run("PRAGMA journal_mode = WAL;") && crashing.run(kSchema)
                    && crashing.run("PRAGMA wal_checkpoint(TRUNCATE);") && crashing.run(addition("/home/me/new")));
        fs::create_directories(fs::path(tree.path(kDatabaseFile)).parent_path());
        for (const char* suffix : { "", "-wal" })
            fs::copy_file(tree.path("elsewhere/database") + suffix, tree.path(kDatabaseFile) + suffix);
        writeList(kLate);
        EXPECT_THAT(used(), ElementsAre("/late"));
        EXPECT_FALSE(fs::exists(tree.path(kDatabaseFile) + "-shm"));
        fs::resize_file(tree.path(kDatabaseFile) + "-wal", 0);
        EXPECT_EQ(used().back(), "/home/me/a") << "an empty log, as readers leave it, is none";
        EXPECT_FALSE(fs::exists(tree.path(kDatabaseFile) + "-shm"));
    }

    TEST_F(PlasmaRecord, IsPassedOverWhileItIsLockedAndReadAfterwards)
    {
        ASSERT_TRUE(writer.run("PRAGMA journal_mode = PERSIST;") && writer.run(kSchema));
        EXPECT_THAT(used(), kPlasmaUses);
        ASSERT_TRUE(writer.run("BEGIN EXCLUSIVE;" + addition("/home/me/new")));
        fs::last_write_time(tree.path(kDatabaseFile), fs::file_time_type::clock::now() - std::chrono::hours(1));
        EXPECT_THAT(used(), kPlasmaUses) << "what was read before stays";
        restart();
        EXPECT_THAT(used(), IsEmpty());
        ASSERT_TRUE(writer.run("COMMIT"));
        EXPECT_EQ(used().back(), "/home/me/new");
    }

    TEST_F(PlasmaRecord, DamageOrAnotherFormCostsOnlyItself)
    {
        writeList(kLate);
        const std::string half = "CREATE TABLE ResourceEvent(targettedResource TEXT, start INTEGER, end INTEGER);"
                                 "INSERT INTO ResourceEvent VALUES ('/home/me/a', 1690000000, 1690000000);";
        ASSERT_TRUE(writer.run(half));
        writer.stop();
        EXPECT_THAT(used(), ElementsAre("/late", "/home/me/a"));
        const std::string bytes = tree.files().readFile(kDatabaseFile);
        for (const std::string& damaged : { std::string("no database"), bytes.substr(0, 5000), std::string() }) {
            tree.files().writeFile(kDatabaseFile, damaged);
            EXPECT_THAT(used(), ElementsAre("/late")) << damaged.size();
        }
    }

    TEST_F(RecentUse, WhatIsOpenedHereIsKeptAndSurvivesARestart)
    {
        const std::string entry = tree.writeApplication("system", "b.desktop", "B");
        tree.writeApplication("user", "a.desktop", "A");
        tree.update();
        // The newest of all records counts.
        writeList(bookmark("file:///home/me/b", kMayFirst));
        const auto open = [&](const std::string& path) {
            index->noteOpened(path);
            clock.advance(std::chrono::seconds(2));
        };
        open("/home/me/\xFF file");
        open(tree.bundlePath("User/Applications/A.app"));
        open(entry);
        open("/home/me/b");
        open("/home/me/\xFF file");
        const auto expected =
            ElementsAre("User/Applications/A.app", "System/Applications/B.app", "/home/me/b", "/home/me/\xFF file");
        EXPECT_THAT(used(), expected);
        restart();
        EXPECT_THAT(used(), expected);
        // The application is known by its id: it keeps its date under another name.
        tree.writeApplication("user", "a.desktop", "Renamed");
        EXPECT_EQ(used().front(), "User/Applications/Renamed.app");

        fs::remove(tree.path(kListFile));
        for (std::size_t number = 0; number < OwnUseRecord::kCapacity; ++number)
            open("/many/" + std::to_string(number));
        restart();
        const auto many = used();
        ASSERT_EQ(many.size(), OwnUseRecord::kCapacity);
        EXPECT_EQ(many.front(), "/many/0");
        EXPECT_EQ(fs::status(tree.path(kOwnFile)).permissions(), fs::perms(0600));
        EXPECT_THAT(errors, IsEmpty());
    }

    TEST_F(RecentUse, ADamagedRecordOfOurOwnIsKeptBesideTheNewOne)
    {
        for (const char* damaged : { "bplist00 no more", "<plist><dict/></plist>", "" }) {
            restart();
            tree.files().writeFile(kOwnFile, damaged);
            index->noteOpened("/home/me/a");
            ASSERT_EQ(errors.size(), 1U);
            EXPECT_EQ(tree.files().readFile(fs::relative(errors[0].path, tree.path()).native()), damaged);
            restart();
            EXPECT_THAT(used(), ElementsAre("/home/me/a"));
            clock.advance(std::chrono::seconds(2));
        }
    }

    TEST_F(RecentUse, ARecordThatCannotBeReadIsLeftAlone)
    {
        tree.files().makeDirectory(kOwnFile);
        index->noteOpened("/home/me/a");
        index->noteOpened("/home/me/b");
        EXPECT_EQ(used().size(), 2U) << "known as long as this process runs";
        EXPECT_EQ(errors.size(), 1U);
        EXPECT_TRUE(fs::is_directory(tree.path(kOwnFile)));
    }

    TEST_F(RecentUse, IsReadAgainOnlyWhereARecordChanged)
    {
        writeList(bookmark("file:///a", kMayFirst));
        const auto past = fs::file_time_type::clock::now() - std::chrono::hours(1);
        fs::last_write_time(tree.path(kListFile), past);
        EXPECT_THAT(used(), ElementsAre("/a"));
        // Other bytes under the stamp of those that were read: whoever sees them has read the file again.
        writeList(bookmark("file:///b", kMayFirst));
        fs::last_write_time(tree.path(kListFile), past);
        index->noteOpened("/c");
        EXPECT_THAT(used(), ElementsAre("/a", "/c"));
        fs::last_write_time(tree.path(kListFile), past + std::chrono::seconds(1));
        EXPECT_THAT(used(), ElementsAre("/b", "/c"));
        fs::remove(tree.path(kListFile));
        EXPECT_THAT(used(), ElementsAre("/c"));
    }

} // namespace
} // namespace quillbox
