#include "Bookmark.h"
#include "BookmarkSearch.h"

#include "MountNamespace.h"
#include "TemporaryDirectory.h"
#include "URL.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

using namespace quillbox;

namespace {

// A volume in memory, mounted at "media/stick", whose device the system's links give the UUID "AAAA-0001".
class Stick {
public:
    Stick()
    {
        files.makeDirectory("media/stick");
        isThere = mount("none", files.path("media/stick").c_str(), "tmpfs", 0, nullptr) == 0
            && mount("none", "/dev", "tmpfs", 0, nullptr) == 0;
        files.writeFile("media/stick/docs/file");
        files.writeFile("media/stick/other/letter");
        struct stat root { };
        const std::string links = "/dev/disk/by-uuid";
        isThere = isThere && std::filesystem::create_directories(links)
            && stat(files.path("media/stick").c_str(), &root) == 0
            && mknod((links + "/AAAA-0001").c_str(), S_IFBLK | 0600, root.st_dev) == 0;
    }
    ~Stick()
    {
        umount2("/dev", MNT_DETACH);
        umount2(files.path(place).c_str(), MNT_DETACH);
    }
    bool move(const std::string& to)
    {
        files.makeDirectory(to);
        const bool isMoved = mount(files.path(place).c_str(), files.path(to).c_str(), nullptr, MS_MOVE, nullptr) == 0;
        place = to;
        return isMoved;
    }

    TemporaryDirectory files;
    std::string place = "media/stick";
    bool isThere = false;
};

TEST(BookmarkOnAVolume, IsFoundWhereTheVolumeIsNow)
{
    if (!MountNamespace::enter())
        return;
    if (!MountNamespace::isRootOfMachine())
        GTEST_SKIP() << "only root makes device files, and so a volume with a UUID";
    struct Case {
        const char* name;
        // What happens to "docs/file" on the volume, below where that is now.
        void (*change)(const TemporaryDirectory&, const std::string& at);
        bool isMountPointRemoved;
        // Below where the volume is now; empty where the file is missing.
        const char* found;
    };
    const auto nothing = [](const auto&, const auto&) {};
    const auto replace = [](const auto& files, const auto& at) {
        files.rename(at + "/other/letter", at + "/docs/file");
    };
    const auto rename = [](const auto& files, const auto& at) {
        files.rename(at + "/docs/file", at + "/docs/renamed");
    };
    const auto move = [](const auto& files, const auto& at) { files.rename(at + "/docs/file", at + "/other/file"); };
    const auto remove = [](const auto& files, const auto& at) { files.remove(at + "/docs/file"); };
    for (const Case& c : {
             Case { "unchanged", nothing, false, "/docs/file" },
             Case { "unchanged, mount point removed", nothing, true, "/docs/file" },
             Case { "replaced", replace, false, "/docs/file" },
             Case { "replaced, mount point removed", replace, true, "/docs/file" },
             Case { "renamed", rename, true, "/docs/renamed" },
             Case { "in a sibling", move, false, "/other/file" },
             Case { "deleted", remove, true, "" },
         }) {
        SCOPED_TRACE(c.name);
        Stick stick;
        ASSERT_TRUE(stick.isThere);
        const URL url = URL::fileURLWithPath(stick.files.path("media/stick/docs/file"));
        const Result<Data> bytes = url.bookmarkData();
        ASSERT_EQ(Bookmark::decode(*bytes)->fileSystemUUID, "AAAA-0001");
        ASSERT_TRUE(stick.move("elsewhere/disk"));
        if (c.isMountPointRemoved)
            stick.files.remove("media/stick");
        c.change(stick.files, stick.place);
        bool isStale = false;
        const Result<URL> found = URL::resolvingBookmarkData(*bytes, isStale);
        EXPECT_EQ(found ? found->path() : "", *c.found ? stick.files.path(stick.place) + c.found : "");
        EXPECT_EQ(isStale, *c.found != '\0');
        Bookmark ofAnother = *Bookmark::decode(*bytes);
        ofAnother.fileSystemUUID = "BBBB-0002";
        EXPECT_FALSE(URL::resolvingBookmarkData(ofAnother.encoded(), isStale)) << "another volume's file";
    }
}

TEST(BookmarkOnAVolume, IsNotLookedForInOtherMounts)
{
    if (!MountNamespace::enter())
        return;
    const TemporaryDirectory files;
    bool isStale = false;
    const Data bytes = *URL::fileURLWithPath(files.writeFile("up/dir/file")).bookmarkData();
    files.makeDirectory("up/sibling");
    files.makeDirectory("far/away");
    files.rename("up/dir/file", "far/away/renamed");
    ASSERT_EQ(mount(files.path("far/away").c_str(), files.path("up/sibling").c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_FALSE(URL::resolvingBookmarkData(bytes, isStale));
    ASSERT_EQ(umount2(files.path("up/sibling").c_str(), 0), 0);
    files.rename("far/away/renamed", "up/sibling/renamed");
    EXPECT_EQ(URL::resolvingBookmarkData(bytes, isStale)->path(), files.path("up/sibling/renamed"));
}

TEST(BookmarkOnAVolume, IsNotLookedForBeyondTheBound)
{
    if (!MountNamespace::enter())
        return;
    const TemporaryDirectory files;
    ASSERT_EQ(mount("none", files.path().c_str(), "tmpfs", 0, nullptr), 0) << "in memory it is quick";
    bool isStale = false;
    const Data bytes = *URL::fileURLWithPath(files.writeFile("up/dir/file")).bookmarkData();
    files.rename("up/dir/file", "up/renamed");
    for (int i = 0; i < kMaximumSearchedEntries; ++i)
        std::filesystem::create_symlink("x", files.path("up/dir/" + std::to_string(i)));
    EXPECT_FALSE(URL::resolvingBookmarkData(bytes, isStale));
    for (int i = 0; i < kMaximumSearchedEntries / 2; ++i)
        files.remove("up/dir/" + std::to_string(i));
    EXPECT_TRUE(URL::resolvingBookmarkData(bytes, isStale));
    EXPECT_EQ(umount2(files.path().c_str(), 0), 0) << "no directory was left open";
}

} // namespace
