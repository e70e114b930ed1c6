#include "FileManager.h"
#include "AliasFile.h"
#include "MountTable.h"
#include "TemporaryDirectory.h"
#include "Unprivileged.h"
#include "VolumeNames.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <tuple>
#include <unistd.h>

using namespace quillbox;

namespace {

constexpr auto kAll = DirectoryEnumerationOptions::none;
constexpr auto kVisible = DirectoryEnumerationOptions::skipsHiddenFiles;
constexpr URLResourceKey kMenuKeys = URLResourceKey::isHidden | URLResourceKey::isDirectory | URLResourceKey::isPackage
    | URLResourceKey::hasHiddenExtension | URLResourceKey::isAliasFile | URLResourceKey::isSymbolicLink;

std::vector<std::string> namesOf(const DirectoryListing& listing)
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < listing.count(); ++i)
        names.emplace_back(listing.name(i));
    std::sort(names.begin(), names.end());
    return names;
}

Result<DirectoryListing> list(const std::string& path, DirectoryEnumerationOptions options = kAll)
{
    return FileManager::defaultManager().contentsOfDirectory(URL::fileURLWithPath(path), options);
}

URLResourceValues valuesOf(const std::string& path, URLResourceKey keys = kMenuKeys)
{
    const Result<URLResourceValues> values = URL::fileURLWithPath(path).resourceValues(keys);
    EXPECT_TRUE(values) << path;
    return values ? *values : URLResourceValues {};
}

URLResourceValues isVolumeOnly(bool isVolume)
{
    URLResourceValues values;
    values.isVolume = isVolume;
    return values;
}

// One entry of every kind that the program tells apart.
void fillWithEveryKind(const TemporaryDirectory& files)
{
    for (const char* name :
         { "plain.txt", ".dot", "secret", "File.app", "newline\nname", "bytes\xff\xfe", "Plain.desktop" })
        files.writeFile(name);
    for (const char* name : { "folder", ".dotfolder", "Program.app", "Pane.prefPane", "Odd.bundle", "Odd.plugin",
                              "Tool.AppDir", "lower.APP", "secretfolder.app", "folder.desktop" })
        files.makeDirectory(name);
    files.makeLink("link", "folder");
    files.makeLink("link.app", "Program.app");
    files.makeLink("dangling", "nowhere");
    files.makeLink("link.desktop", "alias.desktop");
    files.writeFile("alias.desktop", "[Desktop Entry]\nType=Link\nURL=file:///usr\n");
    files.writeFile(".hidden", "secret\nsecretfolder.app\n\nnot there\n");
    ASSERT_EQ(mkfifo(files.path("pipe").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(files.path("pipe.desktop").c_str(), 0600), 0);
}

TEST(DirectoryListing, TellsExactlyWhatALookTells)
{
    const TemporaryDirectory files;
    fillWithEveryKind(files);
    const Result<DirectoryListing> listing = list(files.path());
    ASSERT_TRUE(listing);
    ASSERT_EQ(listing->count(), 25U);
    std::size_t told = 0;
    for (std::size_t i = 0; i < listing->count(); ++i) {
        const auto known = listing->knownResourceValues(i);
        EXPECT_EQ(known.has_value(), !listing->name(i).ends_with(".desktop")) << listing->name(i);
        if (!known)
            continue;
        ++told;
        EXPECT_EQ(*known, valuesOf(listing->path(i))) << listing->name(i);
    }
    EXPECT_EQ(told, 20U);
}

TEST(DirectoryListing, LeavesOutWhatIsHidden)
{
    const TemporaryDirectory files;
    fillWithEveryKind(files);
    const std::vector<std::string> visible = namesOf(*list(files.path(), kVisible));
    EXPECT_EQ(visible, (std::vector<std::string> { "File.app",      "Odd.bundle",  "Odd.plugin",   "Pane.prefPane",
                                                   "Plain.desktop", "Program.app", "Tool.AppDir",  "alias.desktop",
                                                   "bytes\xff\xfe", "dangling",    "folder",       "folder.desktop",
                                                   "link",          "link.app",    "link.desktop", "lower.APP",
                                                   "newline\nname", "pipe",        "pipe.desktop", "plain.txt" }));
    for (const auto& name : namesOf(*list(files.path())))
        EXPECT_EQ(*valuesOf(files.path(name)).isHidden,
                  std::find(visible.begin(), visible.end(), name) == visible.end())
            << name;
}

TEST(DirectoryListing, TakesMoreThanOneBufferful)
{
    const TemporaryDirectory files;
    std::vector<std::string> names;
    for (int i = 0; i < 1500; ++i) {
        names.push_back(std::to_string(i) + std::string(200, 'n'));
        files.writeFile(names.back());
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(namesOf(*list(files.path())), names);
}

TEST(DirectoryListing, LongestNamesAndOddHiddenFiles)
{
    const TemporaryDirectory files;
    const std::string longest(255, 'n');
    files.writeFile(longest);
    files.makeDirectory(".hidden");
    EXPECT_EQ(namesOf(*list(files.path(), kVisible)), std::vector<std::string> { longest });
    files.remove(".hidden");
    ASSERT_EQ(mkfifo(files.path(".hidden").c_str(), 0600), 0);
    EXPECT_EQ(namesOf(*list(files.path(), kVisible)), std::vector<std::string> { longest })
        << "a pipe is not waited for";
    EXPECT_TRUE(list(files.makeDirectory("empty"))->isEmpty());
}

TEST(FileManager, ReportsWhatCantBeListed)
{
    const TemporaryDirectory files;
    files.makeLink("loop", "loop");
    files.writeFile("file");
    EXPECT_EQ(list(files.path("none")).error().code, ENOENT);
    EXPECT_EQ(list(files.path("file")).error().code, ENOTDIR);
    EXPECT_EQ(list(files.path("loop")).error().code, ELOOP);
    EXPECT_EQ(list("").error().code, ENOENT);
    EXPECT_EQ(list(files.path() + std::string("\0/x", 3)).error().code, ENOENT);
    EXPECT_EQ(list(files.path("file")).error().path, files.path("file"));
}

// One directory can be listed but not searched, the other searched but not listed.
TEST(FileManager, KeepsToWhatPermissionsAllow)
{
    const TemporaryDirectory files;
    files.writeFile("listable/file");
    files.makeDirectory("listable/folder");
    files.writeFile("searchable/file");
    ASSERT_EQ(chmod(files.path("listable").c_str(), 0444), 0);
    ASSERT_EQ(chmod(files.path("searchable").c_str(), 0111), 0);
    ASSERT_EQ(chmod(files.path().c_str(), 0755), 0);
    const std::string text = runWithoutPrivileges([&] {
        std::string report;
        const Result<DirectoryListing> listing = list(files.path("listable"));
        for (std::size_t i = 0; listing && i < listing->count(); ++i)
            report += listing->knownResourceValues(i) ? "told " : "untold ";
        report +=
            std::to_string(URL::fileURLWithPath(files.path("listable/file")).resourceValues(kMenuKeys).error().code);
        report += FileManager().fileExists(files.path("listable/file")) ? " there " : " unreachable ";
        report += std::to_string(list(files.path("listable/folder")).error().code) + " ";
        report += std::to_string(list(files.path("searchable")).error().code);
        report += FileManager().fileExists(files.path("searchable/file")) ? " there" : " unreachable";
        return report;
    });
    ASSERT_EQ(chmod(files.path("listable").c_str(), 0755), 0);
    ASSERT_EQ(chmod(files.path("searchable").c_str(), 0755), 0);
    EXPECT_EQ(text, "untold untold 13 unreachable 13 13 there");
}

TEST(FileManager, ExistenceFollowsLinks)
{
    const TemporaryDirectory files;
    files.makeDirectory("folder");
    files.writeFile("file");
    files.makeLink("toFolder", "folder");
    files.makeLink("dangling", "none");
    bool isDirectory = false;
    EXPECT_TRUE(FileManager().fileExists(files.path("toFolder"), isDirectory) && isDirectory);
    EXPECT_TRUE(FileManager().fileExists(files.path("file"), isDirectory) && !isDirectory);
    EXPECT_FALSE(FileManager().fileExists(files.path("dangling")));
    EXPECT_FALSE(FileManager().fileExists(""));
    EXPECT_FALSE(FileManager().fileExists(files.path("file") + std::string("\0x", 2)));
}

TEST(FileManager, ReadsLinksAsTheyAreStored)
{
    const TemporaryDirectory files;
    const std::string distant = "../" + std::string(1000, 'x') + "/./y//";
    EXPECT_EQ(*FileManager().destinationOfSymbolicLink(files.makeLink("link", distant)), distant);
    EXPECT_EQ(FileManager().destinationOfSymbolicLink(files.path()).error().code, EINVAL);
    EXPECT_EQ(FileManager().destinationOfSymbolicLink(files.path("none")).error().code, ENOENT);
}

TEST(ResourceValues, KnowVolumes)
{
    class Names final : public VolumeNames {
    public:
        std::optional<std::string> localizedName(const std::string& root) override { return "Volume " + root; }
    };
    for (const auto& [path, isVolume] : { std::pair("/proc", true), { "/", true }, { "/proc/self", false } })
        EXPECT_EQ(valuesOf(path, URLResourceKey::isVolume | URLResourceKey::volumeLocalizedName),
                  isVolumeOnly(isVolume));
    Names names;
    VolumeNames::install(&names);
    EXPECT_EQ(valuesOf("/proc", URLResourceKey::volumeLocalizedName).volumeLocalizedName, "Volume /proc");
    EXPECT_FALSE(valuesOf("/proc/self", URLResourceKey::volumeLocalizedName).volumeLocalizedName);
    const TemporaryDirectory links;
    const std::string throughLink = links.makeLink("root", "/") + "/proc";
    EXPECT_EQ(valuesOf(throughLink, URLResourceKey::volumeLocalizedName).volumeLocalizedName, "Volume /proc");
    VolumeNames::install(nullptr);
    // By whatever way the directory is reached, what is mounted in it is not told.
    const TemporaryDirectory files;
    for (const std::string& path : { std::string("/"), files.makeLink("root", "/") }) {
        const Result<DirectoryListing> listing = list(path);
        for (std::size_t i = 0; i < listing->count(); ++i) {
            if (listing->name(i) == "proc") {
                EXPECT_FALSE(listing->knownResourceValues(i)) << path;
            }
        }
    }
}

TEST(MountTable, ReadsTheSystemsLines)
{
    MountTable table;
    table.parse("36 35 98:1 / / rw,noatime master:1 shared:2 - ext4 /dev/sda1 rw\n"
                "damaged line\n"
                "37 36 8:1 / /media/My\\040Disk\\134 rw - vfat /dev/sdb1 rw\n"
                "x 36 8:1 / /bad rw - vfat /dev/sdb1 rw\n"
                "39 36 8 / /bad rw - vfat /dev/sdb1 rw\n"
                "38 36 0:5 / /media/b rw - fuse.x some\\040where rw");
    ASSERT_EQ(table.mounts().size(), 3U);
    EXPECT_EQ(table.mountPointsIn("/media"), (std::unordered_set<std::string> { "My Disk\\", "b" }));
    EXPECT_TRUE(table.mountPointsIn("/media/b").empty());
    EXPECT_EQ(table.find(36)->source, "/dev/sda1");
    EXPECT_EQ(table.find(36)->device, makedev(98, 1));
    EXPECT_EQ(table.find(37)->mountPoint, "/media/My Disk\\");
    EXPECT_EQ(table.find(38)->source, "some where");
    EXPECT_EQ(table.find(99), nullptr);
}

TEST(MountTable, TellsWhatMayWaitForAnotherComputer)
{
    for (const auto& [type, source, isRemote] : { std::tuple("nfs4", "host:/home", true),
                                                  { "fuse.sshfs", "me@host:", true },
                                                  { "fuse", "//host/share", true },
                                                  { "fuse.ext4", "/images/disk", false },
                                                  { "fuseblk", "/dev/sdb1", false },
                                                  { "tmpfs", "tmpfs", false } })
        EXPECT_EQ((MountTable::Mount { 1, 0, "/mnt", type, source }.isRemote()), isRemote) << type << ' ' << source;
}

TEST(AliasFile, IsALinkEntryToAFile)
{
    const std::pair<const char*, const char*> cases[] = {
        { "[Desktop Entry]\nType=Link\nURL=file:///a%20b\n", "/a b" },
        { "# comment\n\n[Desktop Entry]\r\nURL = file:///a\\sb\r\n Type = Link \r\n", "/a b" },
        { "[Desktop Entry]\nType=Link\nURL=file:///a", "/a" },
        { "[Desktop Entry]\nType=Application\nURL=file:///a\n", "" },
        { "[Desktop Entry]\nType=Link\nURL=https://example.org/\n", "" },
        { "[Desktop Entry]\nType=Link\nURL[de]=file:///a\n", "" },
        { "[Other]\nType=Link\nURL=file:///a\n", "" },
        { "[Desktop Entry]\nType=Link\n[Other]\nURL=file:///a\n", "" },
        { "Type=Link\nURL=file:///a\n", "" },
        { "\xff\xfe=\n[", "" },
        { "", "" },
    };
    const TemporaryDirectory files;
    for (const auto& [text, target] : cases) {
        const URL url = URL::fileURLWithPath(files.writeFile("x.desktop", text));
        const Result<URL> found = URL::resolvingAliasFile(url);
        EXPECT_EQ(found ? found->path() : "", target) << text;
        EXPECT_EQ(*valuesOf(url.path()).isAliasFile, target[0] != '\0') << text;
    }
    const char* entry = "[Desktop Entry]\nType=Link\nURL=file:///a\n";
    EXPECT_FALSE(*valuesOf(files.writeFile("x.link", entry)).isAliasFile) << "only the suffix is looked into";
    EXPECT_FALSE(*valuesOf(files.writeFile("far.desktop", std::string(70000, '\n') + entry)).isAliasFile);
}

TEST(FileManager, HomeIsTheEnvironments)
{
    const TemporaryDirectory files;
    const char* old = getenv("HOME");
    const std::string before = old ? old : "";
    setenv("HOME", files.path().c_str(), 1);
    EXPECT_EQ(FileManager().homeDirectoryForCurrentUser().path(), files.path());
    setenv("HOME", "relative", 1);
    EXPECT_TRUE(FileManager().homeDirectoryForCurrentUser().path().starts_with('/'));
    EXPECT_NE(FileManager().homeDirectoryForCurrentUser().path(), files.path());
    old ? setenv("HOME", before.c_str(), 1) : unsetenv("HOME");
    EXPECT_TRUE(
        FileManager().urls(SearchPathDirectory::desktopDirectory, SearchPathDomainMask::userDomainMask).empty());
}

} // namespace
