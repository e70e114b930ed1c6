#include "UserDefaults.h"

#include "Bundle.h"
#include "ChildProcess.h"
#include "FileDescriptor.h"
#include "Installed.h"
#include "ManualClock.h"
#include "TemporaryDirectory.h"
#include "Unprivileged.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace quillbox;

namespace {

constexpr const char* kFile = "config/quillbox/defaults.plist";
using Values = PropertyList::Dictionary;

// Settings in a directory of their own, and what was told of failures.
class Settings : public testing::Test {
protected:
    Settings()
    {
        defaults.setFailureHandler([this](const Error& error) { failures.push_back(error.description()); });
    }
    // Another program writes the settings.
    void writeFromOutside(const PropertyList& values) const
    {
        const Data bytes = *values.binaryData();
        files.writeFile(kFile, std::string(bytes.begin(), bytes.end()));
    }
    // A file that nobody has touched since long before the clock's time.
    void writeSettled(std::string_view name, const std::string& text) const
    {
        files.writeFile(name, text);
        std::filesystem::last_write_time(
            files.path(name), std::filesystem::file_time_type::clock::now() - std::chrono::hours(24 * 365 * 40));
    }
    // As a program started now would read them.
    Values onDisk() const { return UserDefaults(defaults.path()).dictionaryRepresentation(); }
    std::vector<std::string> fileNames() const { return files.names("config/quillbox"); }

    TemporaryDirectory files;
    ManualClock clock { Date { 0 } };
    UserDefaults defaults { files.path(kFile) };
    std::vector<std::string> failures;
};

TEST_F(Settings, WriteOnceWhenAsked)
{
    EXPECT_FALSE(defaults.object("a"));
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_FALSE(std::filesystem::exists(files.path("config"))) << "nothing set, nothing made";
    defaults.set(std::int64_t { 1 }, "a");
    defaults.set("text", "b");
    EXPECT_FALSE(std::filesystem::exists(files.path("config")));
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(onDisk(), (Values { { "a", std::int64_t { 1 } }, { "b", "text" } }));
    EXPECT_EQ(fileNames(), std::vector<std::string> { "defaults.plist" });
    struct stat before { };
    struct stat after { };
    ASSERT_EQ(stat(files.path("config").c_str(), &before), 0);
    EXPECT_EQ(before.st_mode & 07777U, 0700U);
    ASSERT_EQ(stat(defaults.path().c_str(), &before), 0);
    EXPECT_EQ(before.st_mode & 07777U, 0600U);
    defaults.set("text", "b");
    EXPECT_TRUE(defaults.synchronize());
    ASSERT_EQ(stat(defaults.path().c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino) << "the same value again writes nothing";
    defaults.removeObject("a");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(UserDefaults(defaults.path()).dictionaryRepresentation(), (Values { { "b", "text" } }));
    EXPECT_TRUE(failures.empty());
}

TEST_F(Settings, ReadAgainWhatOthersWrote)
{
    writeFromOutside(Values { { "a", "old" }, { "b", "old" } });
    EXPECT_EQ(defaults.object("a"), PropertyList("old"));
    defaults.set("pending", "b");
    writeFromOutside(Values { { "a", "newer" }, { "b", "newer" }, { "c", true } });
    EXPECT_EQ(defaults.object("a"), PropertyList("newer"));
    EXPECT_EQ(defaults.object("b"), PropertyList("pending"));
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(onDisk(), (Values { { "a", "newer" }, { "b", "pending" }, { "c", true } }));
    files.remove(kFile);
    EXPECT_TRUE(defaults.dictionaryRepresentation().empty());
}

TEST_F(Settings, ValuesAreReadAsNumbersAndBooleans)
{
    // As a number, and as a truth.
    const std::tuple<PropertyList, std::int64_t, bool> cases[] = {
        { true, 1, true },
        { false, 0, false },
        { std::uint64_t { 1 } << 63U, std::numeric_limits<std::int64_t>::min(), true },
        { -2.9, -2, true },
        { 1e300, std::numeric_limits<std::int64_t>::max(), true },
        { std::numeric_limits<double>::quiet_NaN(), 0, true },
        { "42", 42, false },
        { " -7 ", -7, false },
        { "99999999999999999999", std::numeric_limits<std::int64_t>::max(), false },
        { "yEs", 0, true },
        { "1", 1, true },
        { Data { 1 }, 0, false },
        { PropertyList::Array {}, 0, false },
    };
    for (const auto& [value, integer, boolean] : cases) {
        SCOPED_TRACE(testing::PrintToString(value));
        defaults.set(value, "key");
        EXPECT_EQ(defaults.integer("key"), integer);
        EXPECT_EQ(defaults.boolean("key"), boolean);
        EXPECT_EQ(defaults.data("key").has_value(), value.as<Data>() != nullptr);
    }
}

TEST_F(Settings, DamagedFilesAreKeptAside)
{
    const std::string aside = "defaults.plist.damaged-20010101-000000";
    const Data noDictionary = *PropertyList(PropertyList::Array { true }).binaryData();
    for (const std::string& damaged : { std::string("bplist00 and no more"),
                                        std::string(noDictionary.begin(), noDictionary.end()), std::string() }) {
        writeSettled(kFile, damaged);
        defaults.set(std::int64_t(damaged.size()), "pending");
        EXPECT_EQ(defaults.integer("pending"), damaged.size()) << "never dropped";
    }
    EXPECT_EQ(fileNames(), (std::vector<std::string> { aside, aside + "-2", aside + "-3" }));
    EXPECT_EQ(files.readFile("config/quillbox/" + aside), "bplist00 and no more");
    ASSERT_EQ(failures.size(), 3U);
    EXPECT_EQ(failures[0],
              "the settings were damaged, so Quillbox starts with new ones; the old file was kept as \""
                  + files.path("config/quillbox/" + aside) + "\"");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(onDisk(), (Values { { "pending", std::int64_t { 0 } } }));
}

TEST_F(Settings, WhatIsBeingWrittenIsNotSetAside)
{
    using namespace std::chrono_literals;
    files.writeFile(kFile, "half");
    EXPECT_FALSE(defaults.object("a"));
    EXPECT_FALSE(defaults.isReadable()) << "what it holds is not known yet";
    defaults.set(true, "b");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(failures.size(), 1U) << "a save that failed is told";
    clock.advance(1500ms);
    files.writeFile(kFile, "half of something longer");
    EXPECT_FALSE(defaults.object("a"));
    clock.advance(1500ms);
    EXPECT_FALSE(defaults.object("a")) << "quiet for less than it takes";
    writeFromOutside(Values { { "a", "whole" } });
    EXPECT_EQ(defaults.object("a"), PropertyList("whole"));
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(onDisk().size(), 2U);
    EXPECT_EQ(failures.size(), 1U);

    files.writeFile(kFile, "half and no more");
    EXPECT_EQ(defaults.object("a"), PropertyList("whole")) << "read before";
    clock.advance(2000ms);
    EXPECT_FALSE(defaults.object("a"));
    EXPECT_EQ(fileNames(), std::vector<std::string> { "defaults.plist.damaged-20010101-000005" });
}

TEST_F(Settings, WhatCantBeReadIsNotWrittenOver)
{
    files.makeDirectory(kFile);
    defaults.set(true, "a");
    EXPECT_TRUE(defaults.boolean("a"));
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_FALSE(defaults.synchronize()) << "nothing new, nothing told";
    const std::string cause = "couldn't read the settings \"" + defaults.path() + "\": Is a directory";
    EXPECT_EQ(failures, (std::vector<std::string> { cause, "couldn't save the settings: " + cause }));
    EXPECT_TRUE(std::filesystem::is_directory(defaults.path()));
    files.remove(kFile);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(onDisk(), (Values { { "a", true } }));
}

TEST_F(Settings, DamageThatCantBeSetAsideIsNotWrittenOver)
{
    writeSettled(kFile, "damaged");
    for (const auto& [name, mode] : { std::pair("", 0755), { "config", 0755 }, { "config/quillbox", 0555 } })
        ASSERT_EQ(chmod(files.path(name).c_str(), static_cast<mode_t>(mode)), 0);
    const std::string text = runWithoutPrivileges([&] {
        defaults.set(true, "new");
        const Result<void> written = defaults.synchronize();
        return written ? "written" : written.error().description();
    });
    EXPECT_NE(text.find("damaged, and couldn't be set aside"), std::string::npos) << text;
    EXPECT_EQ(files.readFile(kFile), "damaged");
    ASSERT_EQ(chmod(files.path("config/quillbox").c_str(), 0755), 0);
}

TEST_F(Settings, EveryFailedSaveIsTold)
{
    files.makeLink(kFile, "nowhere/defaults.plist");
    for (const int value : { 1, 2, 2 }) {
        defaults.set(std::int64_t { value }, "a");
        EXPECT_FALSE(defaults.synchronize());
        EXPECT_FALSE(defaults.synchronize()) << "the end of another event: tried again, not told again";
    }
    EXPECT_EQ(failures.size(), 3U);
    EXPECT_EQ(failures[2],
              "couldn't save the settings in \"" + files.path("config/quillbox/nowhere/defaults.plist")
                  + "\": No such file or directory");
    EXPECT_EQ(fileNames(), std::vector<std::string> { "defaults.plist" }) << "its volume may be missing";
    files.remove(kFile);
    files.makeLink(kFile, "defaults.plist");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(failures.size(), 4U) << "another cause";
}

TEST_F(Settings, ALinkIsWrittenThrough)
{
    files.makeDirectory("dot files");
    files.makeLink("config/quillbox/second", "../../dot files/settings");
    files.makeLink(kFile, "second");
    defaults.set(std::int64_t { 1 }, "a");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(files.path("dot files/settings"))));
    writeSettled("dot files/settings", "damaged");
    EXPECT_FALSE(defaults.object("a"));
    EXPECT_EQ(files.readFile("dot files/settings.damaged-20010101-000000"), "damaged");
    defaults.set(std::int64_t { 2 }, "a");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(onDisk(), (Values { { "a", std::int64_t { 2 } } }));
    EXPECT_EQ(fileNames(), (std::vector<std::string> { "defaults.plist", "second" }));
    EXPECT_TRUE(std::filesystem::is_symlink(defaults.path()));
}

TEST_F(Settings, WhatAKilledSaveLeftGoesWithTheNext)
{
    const std::string left = "defaults.plist.unfinished-";
    for (const std::string& name :
         { left + "abcdef", left + "AtWork", left + "longer6", std::string("defaults.plist.backup") })
        files.writeFile("config/quillbox/" + name, "mine");
    const FileDescriptor atWork(open(files.path("config/quillbox/" + left + "AtWork").c_str(), O_RDWR));
    ASSERT_EQ(flock(atWork.get(), LOCK_EX), 0);
    defaults.set(true, "a");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(
        fileNames(),
        (std::vector<std::string> { "defaults.plist", "defaults.plist.backup", left + "AtWork", left + "longer6" }));
}

// A limit on the size of files stands in for a disk that is full.
TEST_F(Settings, AFullDiskKeepsTheOldFile)
{
    writeFromOutside(Values { { "old", true } });
    const ChildRun run = runInChild([&] {
        const rlimit limit { 100, 100 };
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &limit);
        defaults.set(std::string(1000, 'x'), "new");
        const Result<void> written = defaults.synchronize();
        return std::string(written ? "written" : strerrorname_np(written.error().code));
    });
    EXPECT_EQ(run.report, "EFBIG");
    EXPECT_EQ(onDisk(), (Values { { "old", true } }));
    EXPECT_EQ(fileNames(), std::vector<std::string> { "defaults.plist" });
}

TEST_F(Settings, FailuresBeforeThereIsAHandlerAreToldLater)
{
    UserDefaults early(files.makeDirectory("early.plist"));
    EXPECT_FALSE(early.object("a"));
    early.setFailureHandler([&](const Error& error) { failures.push_back(error.description()); });
    EXPECT_EQ(failures.size(), 1U);
}

TEST_F(Settings, RemovingTheDomainDeletesEverything)
{
    files.writeFile(
        "Info.plist",
        "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>org.example.Own</string></dict></plist>");
    const ApplicationResources resources { files.path() };
    const Installed<const ApplicationResources> installed(resources);
    writeFromOutside(Values { { "old", true } });
    defaults.set(true, "new");
    defaults.removePersistentDomain("org.example.Other");
    EXPECT_EQ(defaults.dictionaryRepresentation().size(), 2U);
    defaults.removePersistentDomain("org.example.Own");
    EXPECT_TRUE(defaults.dictionaryRepresentation().empty());
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_TRUE(fileNames().empty());
}

TEST_F(Settings, StandardOnesLieInTheConfigurationDirectory)
{
    for (const auto& [configured, path] : { std::pair("/etc/xdg x", "/etc/xdg x/quillbox/defaults.plist"),
                                            { "relative", "/home/me/.config/quillbox/defaults.plist" },
                                            { "", "/home/me/.config/quillbox/defaults.plist" } })
        EXPECT_EQ(runWithoutPrivileges([directory = configured] {
                      setenv("HOME", "/home/me", 1);
                      setenv("XDG_CONFIG_HOME", directory, 1);
                      return UserDefaults::standard().path();
                  }),
                  path);
}

} // namespace
