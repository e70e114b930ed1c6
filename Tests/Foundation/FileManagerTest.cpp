#include "FileManager.h"

#include "Bundle.h"
#include "FileContents.h"
#include "Installed.h"
#include "MountTable.h"
#include "TemporaryDirectory.h"
#include "Unprivileged.h"
#include "VolumeNames.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <tuple>

using namespace quillbox;

namespace {

struct Files : testing::Test {
    const TemporaryDirectory files;
};

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
    return *URL::fileURLWithPath(path).resourceValues(keys);
}

// One entry of every kind that the program tells apart.
void fillWithEveryKind(const TemporaryDirectory& files)
{
    for (const char* name :
         { "plain.txt", ".dot", "secret", "File.app", "newline\nname", "bytes\xff\xfe", "Plain.desktop" })
        files.writeFile(name);
    for (const char* name : { "folder", ".dotfolder", "Program.app", "Pane.prefPane", "Odd.bundle", "Odd.plugin",
                              "Tool.AppDir", "lower.APP", "secretfolder.app", "folder.desktop", ".app", ".plugin" })
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

TEST_F(Files, AreListedWithExactlyWhatALookTells)
{
    fillWithEveryKind(files);
    const Result<DirectoryListing> listing = list(files.path());
    ASSERT_EQ(listing->count(), 27U);
    const std::set<std::string_view> hidden { ".dot", ".dotfolder", ".hidden",         "secret",
                                              ".app", ".plugin",    "secretfolder.app" };
    std::vector<std::string> visible;
    for (std::size_t i = 0; i < listing->count(); ++i) {
        const std::string name(listing->name(i));
        const auto known = listing->knownResourceValues(i);
        const URLResourceValues looked = valuesOf(listing->path(i));
        EXPECT_EQ(known.has_value(), !name.ends_with(".desktop")) << name;
        EXPECT_EQ(known.value_or(looked), looked) << name;
        EXPECT_EQ(*listing->resourceValues(i, kMenuKeys), looked) << name;
        EXPECT_EQ(looked.isHidden, hidden.contains(name)) << name;
        EXPECT_FALSE(name.starts_with('.') && (*looked.isPackage || *looked.hasHiddenExtension)) << name;
        if (!hidden.contains(name))
            visible.push_back(name);
    }
    std::sort(visible.begin(), visible.end());
    EXPECT_EQ(namesOf(*list(files.path(), kVisible)), visible);
}

TEST_F(Files, AreListedInMoreThanOneBufferfulOfLongestNames)
{
    std::vector<std::string> names;
    for (int i = 0; i < 1500; ++i) {
        names.push_back(std::to_string(i));
        names.back().resize(255, 'n');
        files.writeFile(names.back());
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(namesOf(*list(files.path())), names);
}

TEST_F(Files, AreListedWithoutWaitingForAPipeOfHiddenNames)
{
    ASSERT_EQ(mkfifo(files.path(".hidden").c_str(), 0600), 0);
    EXPECT_TRUE(list(files.path(), kVisible)->isEmpty());
}

TEST_F(Files, ThatCantBeListedAreReported)
{
    files.makeLink("loop", "loop");
    files.writeFile("file");
    for (const auto& [path, code] : { std::pair(files.path("none"), ENOENT),
                                      { files.path("file"), ENOTDIR },
                                      { files.path("loop"), ELOOP },
                                      { "", ENOENT },
                                      { files.path() + std::string("\0/x", 3), ENOENT } })
        EXPECT_EQ(list(path).error().code, code) << path;
    EXPECT_EQ(list(files.path("file")).error().path, files.path("file"));
}

TEST_F(Files, OfADirectoryThatCantBeSearchedAreNotKnown)
{
    files.makeDirectory("listable/folder");
    ASSERT_EQ(chmod(files.path("listable").c_str(), 0444), 0);
    ASSERT_EQ(chmod(files.path().c_str(), 0755), 0);
    const std::string text = runWithoutPrivileges([&] {
        const std::string folder = files.path("listable/folder");
        const Result<DirectoryListing> listing = list(files.path("listable"));
        return std::to_string(listing->count()) + (listing->knownResourceValues(0) ? " told " : " untold ")
            + (FileManager().fileExists(folder) ? "there " : "unreachable ") + std::to_string(list(folder).error().code)
            + " " + std::to_string(URL::fileURLWithPath(folder).resourceValues(kMenuKeys).error().code) + " "
            + std::to_string(URL::fileURLWithPath(folder).bookmarkData().error().code);
    });
    ASSERT_EQ(chmod(files.path("listable").c_str(), 0755), 0);
    EXPECT_EQ(text, "1 untold unreachable 13 13 13");
}

TEST_F(Files, ThatAreLinksAreReadAsTheyAreStored)
{
    const std::string distant = "../" + std::string(1000, 'x') + "/./y//";
    EXPECT_EQ(*FileManager().destinationOfSymbolicLink(files.makeLink("link", distant)), distant);
    EXPECT_EQ(FileManager().destinationOfSymbolicLink(files.path()).error().code, EINVAL);
}

TEST_F(Files, ThatAreVolumesAreKnown)
{
    class Names final : public VolumeNames {
    public:
        std::optional<std::string> localizedName(const std::string& root) override { return "Volume " + root; }
    };
    const std::string rootLink = files.makeLink("root", "/");
    Names names;
    std::optional<Installed<VolumeNames>> installed(std::in_place, names);
    for (const auto& [path, name] : { std::pair(std::string("/proc"), "Volume /proc"),
                                      { "/", "Volume /" },
                                      { "/proc/self", "" },
                                      { rootLink + "/proc", "Volume /proc" } }) {
        const URLResourceValues values = valuesOf(path, URLResourceKey::isVolume | URLResourceKey::volumeLocalizedName);
        EXPECT_EQ(values.isVolume, *name != '\0') << path;
        EXPECT_EQ(values.volumeLocalizedName.value_or(""), name) << path;
    }
    installed.reset();
    EXPECT_FALSE(valuesOf("/proc", URLResourceKey::volumeLocalizedName).volumeLocalizedName);
    // What something is mounted on is told without a look, which what is mounted there might not answer.
    for (const std::string& path : { std::string("/"), rootLink }) {
        const Result<DirectoryListing> listing = list(path);
        bool isTold = false;
        for (std::size_t i = 0; i < listing->count(); ++i)
            isTold = isTold || (listing->name(i) == "proc" && listing->knownResourceValues(i)->isDirectory == true);
        EXPECT_TRUE(isTold) << path;
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
    EXPECT_EQ(table.find(36)->device, makedev(98, 1));
    EXPECT_EQ(table.find(37)->mountPoint, "/media/My Disk\\");
    EXPECT_EQ(table.find(38)->source, "some where");
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

TEST_F(Files, ThatAreLinkEntriesAreAliases)
{
    setenv("QUILLBOX_TEST_PLACE", "/some 100% place", 1);
    setenv("QUILLBOX_TEST_HOME", "/home/me", 1);
    const std::pair<const char*, const char*> cases[] = {
        { "[Desktop Entry]\nType=Link\nURL=file:///a%20b\n", "/a b" },
        { "# comment\n\n[Desktop Entry]\r\nURL = file:///a\\sb\r\n Type = Link \r\n", "/a b" },
        { "[Desktop Entry]\nType=Link\nURL=file:///a", "/a" },
        { "[Desktop Entry]\nType=Application\nURL=file:///a\n", "" },
        { "[Desktop Entry]\nType=Link\nURL=https://example.org/\n", "" },
        { "[Desktop Entry]\nType=Link\nURL[de]=file:///a\n", "" },
        { "[Desktop Entry]\nType=Link\nURL[$e]=$QUILLBOX_TEST_PLACE\n", "/some 100% place" },
        { "[Desktop Entry]\nType=Link\nURL[$ie]=${QUILLBOX_TEST_PLACE}/$$x/$QUILLBOX_TEST_NONE\n",
          "/some 100% place/$x" },
        { "[Desktop Entry]\nType=Link\nURL[$e]=file:$QUILLBOX_TEST_HOME/a%20b\n", "/home/me/a b" },
        { "[Desktop Entry]\nType=Link\nURL[$e]=file:///tmp/$(touch x)\n", "/tmp/$(touch x)" },
        { "[Desktop Entry]\nType=Link\nURL[$i]=$QUILLBOX_TEST_HOME\n", "" },
        { "[Other]\nType=Link\nURL=file:///a\n", "" },
        { "[Desktop Entry]\nType=Link\n[Other]\nURL=file:///a\n", "" },
        { "Type=Link\nURL=file:///a\n", "" },
        { "\xff\xfe=\n[", "" },
    };
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

TEST_F(Files, AreReadUpToTheLimit)
{
    const std::string path = files.writeFile("five", "12345");
    EXPECT_EQ(readFile(path, 5)->size(), 5U);
    EXPECT_EQ(readFile(path, 4).error().code, EFBIG);
    EXPECT_EQ(readSmallFile(AT_FDCWD, path.c_str(), 4), "1234");
}

TEST_F(Files, OfBundlesTellOddInformation)
{
    files.writeFile("A.app/Contents/Info.plist",
                    "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>A \u00e9</string>"
                    "<key>CFBundleIdentifier</key><integer>3</integer></dict></plist>");
    EXPECT_EQ(Bundle::atPath(files.path("A.app")).value().infoString("CFBundleName"), "A \u00e9");
    EXPECT_FALSE(Bundle::atPath(files.path("A.app")).value().bundleIdentifier()) << "a number is no identifier";
    files.writeFile("A.app/Contents/Info.plist", "damaged");
    EXPECT_FALSE(Bundle::atPath(files.path("A.app")).value().infoString("CFBundleName"));
}

} // namespace
