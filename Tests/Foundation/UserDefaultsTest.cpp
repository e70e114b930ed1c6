#include "UserDefaults.h"

#include "Bundle.h"
#include "FileContents.h"
#include "FileDescriptor.h"
#include "Installed.h"
#include "ManualClock.h"
#include "TemporaryDirectory.h"
#include "Unprivileged.h"

#include <algorithm>
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
struct World {
    TemporaryDirectory files;
    ManualClock clock { Date { 0 } };
    UserDefaults defaults { files.path(kFile) };
    std::vector<std::string> failures;

    World()
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
    Values onDisk() const
    {
        const std::string text = files.readFile(kFile);
        const Result<PropertyList> list = PropertyList::fromData(Data(text.begin(), text.end()));
        return list ? *list->as<Values>() : Values { { "unreadable", true } };
    }
    // Persons without privileges may use the settings, and their directory as `mode` tells.
    void openToAll(mode_t mode) const
    {
        for (const char* name : { "", "config", kFile })
            ASSERT_EQ(chmod(files.path(name).c_str(), 0777), 0);
        ASSERT_EQ(chmod(files.path("config/quillbox").c_str(), mode), 0);
    }
    std::vector<std::string> fileNames() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(files.path("config/quillbox")))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST(UserDefaults, WriteOnceWhenAsked)
{
    World world;
    EXPECT_FALSE(world.defaults.object("a"));
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_FALSE(std::filesystem::exists(world.files.path("config"))) << "nothing set, nothing made";
    world.defaults.set(std::int64_t { 1 }, "a");
    world.defaults.set("text", "b");
    EXPECT_FALSE(std::filesystem::exists(world.files.path("config")));
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(world.onDisk(), (Values { { "a", std::int64_t { 1 } }, { "b", "text" } }));
    EXPECT_EQ(world.fileNames(), std::vector<std::string> { "defaults.plist" });
    struct stat before { };
    struct stat after { };
    ASSERT_EQ(stat(world.files.path("config").c_str(), &before), 0);
    EXPECT_EQ(before.st_mode & 07777U, 0700U);
    ASSERT_EQ(stat(world.defaults.path().c_str(), &before), 0);
    EXPECT_EQ(before.st_mode & 07777U, 0600U);
    world.defaults.set("text", "b");
    EXPECT_TRUE(world.defaults.synchronize());
    ASSERT_EQ(stat(world.defaults.path().c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino) << "the same value again writes nothing";
    world.defaults.removeObject("a");
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(UserDefaults(world.defaults.path()).dictionaryRepresentation(), (Values { { "b", "text" } }));
    EXPECT_TRUE(world.failures.empty());
}

TEST(UserDefaults, ReadAgainWhatOthersWrote)
{
    World world;
    world.writeFromOutside(Values { { "a", "old" }, { "b", "old" } });
    EXPECT_EQ(world.defaults.object("a"), PropertyList("old"));
    world.defaults.set("pending", "b");
    world.writeFromOutside(Values { { "a", "newer" }, { "b", "newer" }, { "c", true } });
    EXPECT_EQ(world.defaults.object("a"), PropertyList("newer"));
    EXPECT_EQ(world.defaults.object("b"), PropertyList("pending"));
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(world.onDisk(), (Values { { "a", "newer" }, { "b", "pending" }, { "c", true } }));
    world.files.remove(kFile);
    EXPECT_TRUE(world.defaults.dictionaryRepresentation().empty());
}

TEST(UserDefaults, ValuesAreReadAsNumbersAndBooleans)
{
    struct Case {
        PropertyList value;
        std::int64_t integer;
        bool boolean;
    };
    const Case cases[] = {
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
    World world;
    for (const Case& c : cases) {
        world.defaults.set(c.value, "key");
        EXPECT_EQ(world.defaults.integer("key"), c.integer) << &c - cases;
        EXPECT_EQ(world.defaults.boolean("key"), c.boolean) << &c - cases;
        EXPECT_EQ(world.defaults.data("key").has_value(), c.value.as<Data>() != nullptr);
    }
}

TEST(UserDefaults, DamagedFilesAreKeptAside)
{
    World world;
    const std::string aside = "defaults.plist.damaged-20010101-000000";
    const Data noDictionary = *PropertyList(PropertyList::Array { true }).binaryData();
    for (const std::string& damaged : { std::string("bplist00 and no more"),
                                        std::string(noDictionary.begin(), noDictionary.end()), std::string() }) {
        world.writeSettled(kFile, damaged);
        world.defaults.set(std::int64_t(damaged.size()), "pending");
        EXPECT_EQ(world.defaults.integer("pending"), damaged.size()) << "never dropped";
    }
    EXPECT_EQ(world.fileNames(), (std::vector<std::string> { aside, aside + "-2", aside + "-3" }));
    EXPECT_EQ(world.files.readFile("config/quillbox/" + aside), "bplist00 and no more");
    ASSERT_EQ(world.failures.size(), 3U);
    EXPECT_EQ(world.failures[0],
              "the settings were damaged, so Quillbox starts with new ones; the old file was kept as \""
                  + world.files.path("config/quillbox/" + aside) + "\"");
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(world.onDisk(), (Values { { "pending", std::int64_t { 0 } } }));
}

TEST(UserDefaults, WhatIsBeingWrittenIsNotSetAside)
{
    using namespace std::chrono_literals;
    World world;
    world.files.writeFile(kFile, "half");
    EXPECT_FALSE(world.defaults.object("a"));
    EXPECT_FALSE(world.defaults.isReadable()) << "what it holds is not known yet";
    world.defaults.set(true, "b");
    EXPECT_FALSE(world.defaults.synchronize());
    EXPECT_EQ(world.failures.size(), 1U) << "a save that failed is told";
    world.clock.advance(1500ms);
    world.files.writeFile(kFile, "half of something longer");
    EXPECT_FALSE(world.defaults.object("a"));
    world.clock.advance(1500ms);
    EXPECT_FALSE(world.defaults.object("a")) << "quiet for less than it takes";
    world.writeFromOutside(Values { { "a", "whole" } });
    EXPECT_EQ(world.defaults.object("a"), PropertyList("whole"));
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(world.onDisk().size(), 2U);
    EXPECT_EQ(world.failures.size(), 1U);

    world.files.writeFile(kFile, "half and no more");
    EXPECT_EQ(world.defaults.object("a"), PropertyList("whole")) << "read before";
    world.clock.advance(2000ms);
    EXPECT_FALSE(world.defaults.object("a"));
    EXPECT_EQ(world.fileNames(), std::vector<std::string> { "defaults.plist.damaged-20010101-000005" });
}

TEST(UserDefaults, WhatCantBeReadIsNotWrittenOver)
{
    World world;
    world.files.makeDirectory(kFile);
    world.defaults.set(true, "a");
    EXPECT_TRUE(world.defaults.boolean("a"));
    EXPECT_FALSE(world.defaults.synchronize());
    EXPECT_FALSE(world.defaults.synchronize()) << "nothing new, nothing told";
    const std::string cause = "couldn't read the settings \"" + world.defaults.path() + "\": Is a directory";
    EXPECT_EQ(world.failures, (std::vector<std::string> { cause, "couldn't save the settings: " + cause }));
    EXPECT_TRUE(std::filesystem::is_directory(world.defaults.path()));
    world.files.remove(kFile);
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(world.onDisk(), (Values { { "a", true } }));
}

TEST(UserDefaults, ADirectoryThatRefusesKeepsTheOldFile)
{
    World world;
    world.writeFromOutside(Values { { "old", true } });
    world.openToAll(0555);
    const auto attempt = [&] {
        world.defaults.set(true, "new");
        const Result<void> written = world.defaults.synchronize();
        return (written ? "written" : written.error().description())
            + (world.defaults.boolean("new") && world.defaults.boolean("old") ? " kept" : " lost");
    };
    EXPECT_EQ(runWithoutPrivileges(attempt),
              "couldn't save the settings in \"" + world.defaults.path() + "\": Permission denied kept");
    EXPECT_EQ(world.fileNames(), std::vector<std::string> { "defaults.plist" });

    world.writeSettled(kFile, "damaged");
    const std::string text = runWithoutPrivileges(attempt);
    EXPECT_NE(text.find("damaged, and couldn't be set aside"), std::string::npos) << text;
    EXPECT_EQ(world.files.readFile(kFile), "damaged") << "not written over";
    ASSERT_EQ(chmod(world.files.path("config/quillbox").c_str(), 0755), 0);
}

TEST(UserDefaults, EveryFailedSaveIsTold)
{
    World world;
    world.files.makeLink(kFile, "nowhere/defaults.plist");
    for (const int value : { 1, 2, 2 }) {
        world.defaults.set(std::int64_t { value }, "a");
        EXPECT_FALSE(world.defaults.synchronize());
        EXPECT_FALSE(world.defaults.synchronize()) << "the end of another event: tried again, not told again";
    }
    EXPECT_EQ(world.failures.size(), 3U);
    EXPECT_EQ(world.failures[2],
              "couldn't save the settings in \"" + world.files.path("config/quillbox/nowhere/defaults.plist")
                  + "\": No such file or directory");
    EXPECT_EQ(world.fileNames(), std::vector<std::string> { "defaults.plist" }) << "its volume may be missing";
    world.files.remove(kFile);
    world.files.makeLink(kFile, "defaults.plist");
    EXPECT_FALSE(world.defaults.synchronize());
    EXPECT_EQ(world.failures.size(), 4U) << "another cause";
}

TEST(UserDefaults, ALinkIsWrittenThrough)
{
    World world;
    world.files.makeDirectory("dot files");
    world.files.makeLink("config/quillbox/second", "../../dot files/settings");
    world.files.makeLink(kFile, "second");
    world.defaults.set(std::int64_t { 1 }, "a");
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_TRUE(
        std::filesystem::is_regular_file(std::filesystem::symlink_status(world.files.path("dot files/settings"))));
    world.writeSettled("dot files/settings", "damaged");
    EXPECT_FALSE(world.defaults.object("a"));
    EXPECT_EQ(world.files.readFile("dot files/settings.damaged-20010101-000000"), "damaged");
    world.defaults.set(std::int64_t { 2 }, "a");
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(world.onDisk(), (Values { { "a", std::int64_t { 2 } } }));
    EXPECT_EQ(world.fileNames(), (std::vector<std::string> { "defaults.plist", "second" }));
    EXPECT_TRUE(std::filesystem::is_symlink(world.defaults.path()));
}

TEST(UserDefaults, WhatAKilledSaveLeftGoesWithTheNext)
{
    World world;
    const std::string left = "defaults.plist.unfinished-";
    for (const std::string& name :
         { left + "abcdef", left + "AtWork", left + "longer6", std::string("defaults.plist.backup") })
        world.files.writeFile("config/quillbox/" + name, "mine");
    const FileDescriptor atWork(open(world.files.path("config/quillbox/" + left + "AtWork").c_str(), O_RDWR));
    ASSERT_EQ(flock(atWork.get(), LOCK_EX), 0);
    world.defaults.set(true, "a");
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(
        world.fileNames(),
        (std::vector<std::string> { "defaults.plist", "defaults.plist.backup", left + "AtWork", left + "longer6" }));
}

// A limit on the size of files stands in for a disk that is full.
TEST(UserDefaults, AFullDiskKeepsTheOldFile)
{
    World world;
    world.writeFromOutside(Values { { "old", true } });
    world.openToAll(0777);
    const std::string text = runWithoutPrivileges([&] {
        const rlimit limit { 100, RLIM_INFINITY };
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &limit);
        world.defaults.set(std::string(1000, 'x'), "new");
        const Result<void> written = world.defaults.synchronize();
        std::string report = written ? "written" : strerrorname_np(written.error().code);
        report += " " + std::to_string(world.fileNames().size()) + " " + std::to_string(world.failures.size());
        const rlimit none { RLIM_INFINITY, RLIM_INFINITY };
        setrlimit(RLIMIT_FSIZE, &none);
        report += world.onDisk() == Values { { "old", true } } ? " kept" : " lost";
        return report + (world.defaults.synchronize() ? " then written" : " never");
    });
    EXPECT_EQ(text, "EFBIG 1 1 kept then written");
    EXPECT_EQ(world.onDisk().size(), 2U);
}

TEST(UserDefaults, FailuresBeforeThereIsAHandlerAreToldLater)
{
    const TemporaryDirectory files;
    UserDefaults early(files.makeDirectory("early.plist"));
    EXPECT_FALSE(early.object("a"));
    int told = 0;
    early.setFailureHandler([&](const Error&) { ++told; });
    EXPECT_EQ(told, 1);
}

TEST(UserDefaults, RemovingTheDomainDeletesEverything)
{
    World world;
    world.files.writeFile(
        "Info.plist",
        "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>org.example.Own</string></dict></plist>");
    const ApplicationResources resources { world.files.path() };
    const Installed<const ApplicationResources> installed(resources);
    world.writeFromOutside(Values { { "old", true } });
    world.defaults.set(true, "new");
    world.defaults.removePersistentDomain("org.example.Other");
    EXPECT_EQ(world.defaults.dictionaryRepresentation().size(), 2U);
    world.defaults.removePersistentDomain("org.example.Own");
    EXPECT_TRUE(world.defaults.dictionaryRepresentation().empty());
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_TRUE(world.fileNames().empty());
}

TEST(UserDefaults, StandardOnesLieInTheConfigurationDirectory)
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

TEST(FileContents, AreReadUpToTheLimit)
{
    const TemporaryDirectory files;
    const std::string path = files.writeFile("five", "12345");
    EXPECT_EQ(readFile(path, 5)->size(), 5U);
    EXPECT_EQ(readFile(path, 4).error().code, EFBIG);
    EXPECT_EQ(readSmallFile(AT_FDCWD, path.c_str(), 4), "1234");
}

TEST(Bundle, ReadsOddInformation)
{
    const TemporaryDirectory files;
    files.writeFile("A.app/Contents/Info.plist",
                    "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>A \u00e9</string>"
                    "<key>CFBundleIdentifier</key><integer>3</integer></dict></plist>");
    EXPECT_EQ(Bundle::atPath(files.path("A.app")).value().infoString("CFBundleName"), "A \u00e9");
    EXPECT_FALSE(Bundle::atPath(files.path("A.app")).value().bundleIdentifier()) << "a number is no identifier";
    files.writeFile("A.app/Contents/Info.plist", "damaged");
    EXPECT_FALSE(Bundle::atPath(files.path("A.app")).value().infoString("CFBundleName"));
}

} // namespace
