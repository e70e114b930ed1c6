#include "UserDefaults.h"

#include "Bundle.h"
#include "ManualClock.h"
#include "TemporaryDirectory.h"
#include "Unprivileged.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace quillbox;

namespace {

// Settings in a directory of their own, and what was told of failures.
struct World {
    TemporaryDirectory files;
    ManualClock clock { Date { 0 } };
    UserDefaults defaults { files.path("config/quillbox/defaults.plist") };
    std::vector<std::string> failures;

    World()
    {
        defaults.setFailureHandler([this](const Error& error) { failures.push_back(error.description()); });
    }
    // Another program writes the settings.
    void writeFromOutside(const PropertyList::Dictionary& values) const
    {
        const Data bytes = *PropertyList(values).binaryData();
        files.writeFile("config/quillbox/defaults.plist", std::string(bytes.begin(), bytes.end()));
    }
    PropertyList::Dictionary onDisk() const
    {
        const std::string text = files.readFile("config/quillbox/defaults.plist");
        const Result<PropertyList> list = PropertyList::fromData(Data(text.begin(), text.end()));
        return list ? *list->as<PropertyList::Dictionary>() : PropertyList::Dictionary { { "unreadable", true } };
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

using Values = PropertyList::Dictionary;

TEST(UserDefaults, WriteOnceWhenAsked)
{
    World world;
    EXPECT_FALSE(world.defaults.object("a"));
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_FALSE(std::filesystem::exists(world.files.path("config"))) << "nothing set, nothing made";
    world.defaults.set(std::int64_t { 1 }, "a");
    world.defaults.set("text", "b");
    EXPECT_EQ(world.defaults.integer("a"), 1);
    EXPECT_FALSE(std::filesystem::exists(world.files.path("config")));
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(world.onDisk(), (Values { { "a", std::int64_t { 1 } }, { "b", "text" } }));
    EXPECT_EQ(world.fileNames(), std::vector<std::string> { "defaults.plist" });
    struct stat status { };
    ASSERT_EQ(stat(world.defaults.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    ASSERT_EQ(stat(world.files.path("config").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
    const ino_t inode = [&] { return stat(world.defaults.path().c_str(), &status), status.st_ino; }();
    world.defaults.set("text", "b");
    EXPECT_TRUE(world.defaults.synchronize());
    ASSERT_EQ(stat(world.defaults.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_ino, inode) << "the same value again writes nothing";
    world.defaults.removeObject("a");
    EXPECT_EQ(world.defaults.dictionaryRepresentation(), (Values { { "b", "text" } }));
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(UserDefaults(world.defaults.path()).dictionaryRepresentation(), (Values { { "b", "text" } }));
    EXPECT_TRUE(world.failures.empty());
}

TEST(UserDefaults, ReadAgainWhatOthersWrote)
{
    World world;
    world.writeFromOutside({ { "a", "old" }, { "b", "old" } });
    EXPECT_EQ(world.defaults.object("a"), PropertyList("old"));
    world.defaults.set("pending", "b");
    world.writeFromOutside({ { "a", "newer" }, { "b", "newer" }, { "c", true } });
    EXPECT_EQ(world.defaults.object("a"), PropertyList("newer"));
    EXPECT_EQ(world.defaults.object("b"), PropertyList("pending"));
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(world.onDisk(), (Values { { "a", "newer" }, { "b", "pending" }, { "c", true } }));
    world.files.remove("config/quillbox/defaults.plist");
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
        { std::int64_t { -1 }, -1, true },
        { std::uint64_t { 1 } << 63U, std::numeric_limits<std::int64_t>::min(), true },
        { -2.9, -2, true },
        { 1e300, std::numeric_limits<std::int64_t>::max(), true },
        { std::numeric_limits<double>::quiet_NaN(), 0, true },
        { 0.0, 0, false },
        { "42", 42, false },
        { " -7 ", -7, false },
        { "99999999999999999999", std::numeric_limits<std::int64_t>::max(), false },
        { "yEs", 0, true },
        { "TRUE", 0, true },
        { "1", 1, true },
        { "no", 0, false },
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
    EXPECT_EQ(world.defaults.integer("absent"), 0);
    EXPECT_FALSE(world.defaults.boolean("absent"));
}

TEST(UserDefaults, DamagedFilesAreKeptAside)
{
    World world;
    for (const char* damaged : { "bplist00 and no more", "", "third" }) {
        world.files.writeFile("config/quillbox/defaults.plist", damaged);
        world.defaults.set(damaged, "pending");
        EXPECT_EQ(world.defaults.object("pending"), PropertyList(damaged)) << "never dropped";
    }
    EXPECT_EQ(world.fileNames(),
              (std::vector<std::string> { "defaults.plist.damaged-20010101-000000",
                                          "defaults.plist.damaged-20010101-000000-2",
                                          "defaults.plist.damaged-20010101-000000-3" }));
    EXPECT_EQ(world.files.readFile("config/quillbox/defaults.plist.damaged-20010101-000000"), "bplist00 and no more");
    ASSERT_EQ(world.failures.size(), 3U);
    EXPECT_EQ(world.failures[0],
              "the settings were damaged, so Quillbox starts with new ones; the old file was kept as \""
                  + world.defaults.path() + ".damaged-20010101-000000\"");
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(world.onDisk(), (Values { { "pending", "third" } }));
}

TEST(UserDefaults, AListThatIsNoDictionaryIsDamagedToo)
{
    World world;
    const Data bytes = *PropertyList(PropertyList::Array { true }).binaryData();
    world.files.writeFile("config/quillbox/defaults.plist", std::string(bytes.begin(), bytes.end()));
    EXPECT_TRUE(world.defaults.dictionaryRepresentation().empty());
    EXPECT_EQ(world.fileNames().size(), 1U);
    EXPECT_NE(world.fileNames()[0], "defaults.plist");
}

TEST(UserDefaults, WhatCantBeReadIsNotWrittenOver)
{
    World world;
    world.files.makeDirectory("config/quillbox/defaults.plist");
    world.defaults.set(true, "a");
    EXPECT_TRUE(world.defaults.boolean("a"));
    EXPECT_FALSE(world.defaults.synchronize());
    EXPECT_FALSE(world.defaults.synchronize());
    EXPECT_EQ(
        world.failures,
        std::vector<std::string> { "couldn't read the settings \"" + world.defaults.path() + "\": Is a directory" });
    EXPECT_TRUE(std::filesystem::is_directory(world.defaults.path()));
    world.files.remove("config/quillbox/defaults.plist");
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_EQ(world.onDisk(), (Values { { "a", true } }));
}

TEST(UserDefaults, ARefusedFileStays)
{
    World world;
    world.writeFromOutside({ { "old", true } });
    for (const char* name : { "", "config", "config/quillbox" })
        ASSERT_EQ(chmod(world.files.path(name).c_str(), 0777), 0);
    ASSERT_EQ(chmod(world.defaults.path().c_str(), 0), 0);
    const std::string text = runWithoutPrivileges([&] {
        world.defaults.set(true, "new");
        const bool isWritten = world.defaults.synchronize().hasValue() || world.defaults.synchronize().hasValue();
        return std::string(isWritten ? "written" : "refused") + (world.defaults.boolean("new") ? " pending " : " lost ")
            + std::to_string(world.failures.size()) + world.failures.at(0).substr(world.failures.at(0).rfind(':'));
    });
    ASSERT_EQ(chmod(world.defaults.path().c_str(), 0600), 0);
    EXPECT_EQ(text, "refused pending 1: Permission denied");
    EXPECT_EQ(world.onDisk(), (Values { { "old", true } }));
}

TEST(UserDefaults, ADirectoryThatRefusesKeepsTheOldFile)
{
    World world;
    world.writeFromOutside({ { "old", true } });
    ASSERT_EQ(chmod(world.files.path().c_str(), 0755), 0);
    ASSERT_EQ(chmod(world.files.path("config").c_str(), 0755), 0);
    ASSERT_EQ(chmod(world.files.path("config/quillbox").c_str(), 0555), 0);
    ASSERT_EQ(chmod(world.defaults.path().c_str(), 0644), 0);
    const auto attempt = [&] {
        world.defaults.set(true, "new");
        const Result<void> written = world.defaults.synchronize();
        return (written ? std::string("written") : written.error().description()) + " "
            + std::to_string(world.defaults.dictionaryRepresentation().size()) + " "
            + std::to_string(world.failures.size());
    };
    EXPECT_EQ(runWithoutPrivileges(attempt),
              "couldn't save the settings in \"" + world.defaults.path() + "\": Permission denied 2 1");
    EXPECT_EQ(world.fileNames(), std::vector<std::string> { "defaults.plist" });

    world.files.writeFile("config/quillbox/defaults.plist", "damaged");
    const std::string text = runWithoutPrivileges(attempt);
    EXPECT_NE(text.find("damaged, and couldn't be set aside"), std::string::npos) << text;
    EXPECT_EQ(world.files.readFile("config/quillbox/defaults.plist"), "damaged") << "not written over";
    ASSERT_EQ(chmod(world.files.path("config/quillbox").c_str(), 0755), 0);
}

// A limit on the size of files stands in for a disk that is full.
TEST(UserDefaults, AFullDiskKeepsTheOldFile)
{
    World world;
    world.writeFromOutside({ { "old", true } });
    for (const char* name : { "", "config", "config/quillbox" })
        ASSERT_EQ(chmod(world.files.path(name).c_str(), 0777), 0);
    ASSERT_EQ(chmod(world.defaults.path().c_str(), 0644), 0);
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
    World world;
    world.files.writeFile("early.plist", "damaged");
    UserDefaults early(world.files.path("early.plist"));
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
    Bundle::installMainResourceDirectory(world.files.path());
    world.writeFromOutside({ { "old", true } });
    world.defaults.set(true, "new");
    world.defaults.removePersistentDomain("org.example.Other");
    EXPECT_EQ(world.defaults.dictionaryRepresentation().size(), 2U);
    world.defaults.removePersistentDomain("org.example.Own");
    EXPECT_TRUE(world.defaults.dictionaryRepresentation().empty());
    EXPECT_TRUE(world.defaults.synchronize());
    EXPECT_TRUE(world.fileNames().empty());
    Bundle::installMainResourceDirectory("");
}

TEST(UserDefaults, StandardOnesLieInTheConfigurationDirectory)
{
    for (const auto& [configured, path] : { std::pair("/etc/xdg x", "/etc/xdg x/quillbox/defaults.plist"),
                                            { "relative", "/home/me/.config/quillbox/defaults.plist" },
                                            { "", "/home/me/.config/quillbox/defaults.plist" } }) {
        const char* directory = configured;
        EXPECT_EQ(runWithoutPrivileges([directory] {
                      setenv("HOME", "/home/me", 1);
                      setenv("XDG_CONFIG_HOME", directory, 1);
                      return UserDefaults::standard().path();
                  }),
                  path);
    }
}

TEST(Bundle, ReadsPackagesAndResources)
{
    const TemporaryDirectory files;
    files.writeFile("A.app/Contents/Info.plist",
                    "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>A \u00e9</string>"
                    "<key>CFBundleIdentifier</key><integer>3</integer></dict></plist>");
    files.writeFile("A.app/Contents/Resources/picture.svg");
    const std::optional<Bundle> bundle = Bundle::atPath(files.path("A.app"));
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->infoString("CFBundleName"), "A \u00e9");
    EXPECT_FALSE(bundle->bundleIdentifier()) << "a number is no identifier";
    EXPECT_EQ(bundle->pathForResource("picture.svg"), files.path("A.app/Contents/Resources/picture.svg"));
    EXPECT_FALSE(bundle->pathForResource("other.svg"));
    EXPECT_FALSE(Bundle::atPath(files.path("A.app/Contents/Info.plist")));
    EXPECT_FALSE(Bundle::atPath(files.path("none")));
    files.writeFile("A.app/Contents/Info.plist", "damaged");
    EXPECT_TRUE(Bundle::atPath(files.path("A.app"))->infoDictionary().empty());
    EXPECT_TRUE(Bundle::atPath(files.makeDirectory("B.app"))->infoDictionary().empty());
}

} // namespace
