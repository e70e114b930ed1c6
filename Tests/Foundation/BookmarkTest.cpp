#include "Bookmark.h"

#include "BookmarkSearch.h"
#include "FileDescriptor.h"
#include "MountNamespace.h"
#include "TemporaryDirectory.h"
#include "URL.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/mount.h>
#include <sys/stat.h>

using namespace quillbox;
using namespace std::string_view_literals;

namespace {

Data bookmarkOf(const std::string& path)
{
    Result<Data> bookmark = URL::fileURLWithPath(path).bookmarkData();
    EXPECT_TRUE(bookmark) << path;
    return bookmark ? *bookmark : Data {};
}

struct Bookmarks : testing::Test {
    const TemporaryDirectory files;
};

// "path", "path (stale)" or "error N".
std::string resolved(const Data& bookmark)
{
    bool isStale = false;
    const Result<URL> url = URL::resolvingBookmarkData(bookmark, isStale);
    return url ? url->path() + (isStale ? " (stale)" : "") : "error " + std::to_string(url.error().code);
}

Bookmark sample()
{
    Bookmark bookmark;
    bookmark.path = "/a/b\xff";
    bookmark.isDirectory = true;
    bookmark.fileSystemUUID = "1234-ABCD";
    bookmark.identity = { 8, 1, 77, FileIdentity::Time { -5, 999999999 } };
    bookmark.handle = { 0, 0, 0, 1, 9 };
    return bookmark;
}

TEST_F(Bookmarks, FormatIsFixed)
{
    const std::string_view expected = "QBbk\x01\x05"
                                      "\0\0\0\x05/a/b\xff"
                                      "\0\0\0\0111234-ABCD"
                                      "\0\0\0\x08\0\0\0\x01\0\0\0\0\0\0\0\x4d"
                                      "\xff\xff\xff\xff\xff\xff\xff\xfb\x3b\x9a\xc9\xff"
                                      "\0\0\0\x05\0\0\0\x01\x09"
                                      "\x93\x9a\x92\xed"sv;
    const Data bytes = sample().encoded();
    EXPECT_EQ(bytes, Data(expected.begin(), expected.end()));
    EXPECT_EQ(*Bookmark::decode(bytes), sample());
}

TEST_F(Bookmarks, DamageIsAnErrorAlways)
{
    const Data whole = bookmarkOf(files.writeFile("file"));
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_FALSE(Bookmark::decode(Data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(i)))) << i;
        for (int bit = 0; bit < 8; ++bit) {
            Data damaged = whole;
            damaged[i] ^= static_cast<std::uint8_t>(1 << bit);
            EXPECT_FALSE(Bookmark::decode(damaged)) << i;
        }
    }
    Data newer = whole;
    newer[4] = 2;
    EXPECT_NE(Bookmark::decode(newer).error().what.find("version 2"), std::string::npos);
    EXPECT_EQ(resolved(Data(100000, 0xff)), "error 22");
}

TEST_F(Bookmarks, BytesWithTheRightSumButWrongFieldsAreAnError)
{
    for (const std::string& path : { std::string("relative"), std::string(), std::string("/a\0b", 4) }) {
        Bookmark bookmark = sample();
        bookmark.path = path;
        EXPECT_FALSE(Bookmark::decode(bookmark.encoded())) << path;
    }
}

TEST_F(Bookmarks, ResolvesWhatIsAtThePath)
{
    for (const std::string& path : { files.writeFile("file"), files.makeDirectory("folder"),
                                     files.makeLink("dangling", "no"), files.writeFile("bytes\xff\n") })
        EXPECT_EQ(resolved(bookmarkOf(path)), path);
    bool isStale = false;
    const URL withSlash = URL::fileURLWithPath(files.path("folder/"));
    EXPECT_EQ(*URL::resolvingBookmarkData(*withSlash.bookmarkData(), isStale), withSlash);
    EXPECT_EQ(URL::fileURLWithPath(files.path("none")).bookmarkData().error().code, ENOENT);
}

// File systems stamp files by a coarse clock; within its tick only a handle tells an inode used again, and
// not every one has handles.
void waitForNextBirthTime()
{
    timespec before {};
    clock_gettime(CLOCK_REALTIME_COARSE, &before);
    for (timespec now = before; now.tv_nsec == before.tv_nsec;)
        clock_gettime(CLOCK_REALTIME_COARSE, &now);
}

constexpr const char* kPicked = "up/dir/file";

struct Move {
    const char* name;
    // From where to where: from nowhere it is made, to nowhere it is removed.
    std::vector<std::pair<std::string, std::string>> steps;
    // Where the picked file is found then; empty where it is missing.
    const char* found;
};

TEST(MovedFile, IsFoundByItsBookmarkAfterARestart)
{
    for (const Move& c : {
             Move { "saved by an editor", { { kPicked, "up/dir/file~" }, { "", kPicked } }, kPicked },
             Move { "renamed", { { kPicked, "up/dir/b" } }, "up/dir/b" },
             Move { "in the parent", { { kPicked, "up/b" } }, "up/b" },
             Move { "in a sibling", { { kPicked, "up/sib/b" } }, "up/sib/b" },
             Move { "directory renamed", { { "up/dir", "up/new" } }, "up/new/file" },
             Move { "in its parent's place", { { kPicked, "b" }, { "up/dir", "" }, { "b", "up/dir" } }, "up/dir" },
             Move { "below a sibling", { { kPicked, "up/sib/low/b" } }, "" },
             Move { "behind a link", { { kPicked, "far/off/b" } }, "" },
             Move { "deleted, its inode used again", { { kPicked, "" }, { "", "up/dir/newcomer" } }, "" },
         }) {
        for (const char* kind : { "file", "directory", "link" }) {
            const TemporaryDirectory files;
            files.makeDirectory("up/sib/low");
            files.makeDirectory("far/off");
            files.makeLink("up/link", "../far/off");
            const Data bookmark = bookmarkOf(*kind == 'f'       ? files.writeFile(kPicked)
                                                 : *kind == 'd' ? files.makeDirectory(kPicked)
                                                                : files.makeLink(kPicked, "nowhere"));
            for (const auto& [from, to] : c.steps) {
                if (from.empty()) {
                    waitForNextBirthTime();
                    files.writeFile(to);
                } else if (to.empty()) {
                    files.remove(from);
                } else {
                    files.rename(from, to);
                }
            }
            EXPECT_EQ(resolved(bookmark), *c.found ? files.path(c.found) + " (stale)" : "error 2")
                << c.name << ", " << kind;
        }
    }
}

TEST_F(Bookmarks, LeadToAnotherNameOfTheFile)
{
    const std::string file = files.writeFile(kPicked);
    const std::string other = files.makeDirectory("up/sib") + "/same";
    const Data bookmark = bookmarkOf(file);
    std::filesystem::create_hard_link(file, other);
    files.remove(kPicked);
    EXPECT_EQ(resolved(bookmark), other + " (stale)");
}

// Hears of every opening of a directory.
class OpeningsOf {
public:
    explicit OpeningsOf(const std::string& directory) : descriptor_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        EXPECT_GE(::inotify_add_watch(descriptor_.get(), directory.c_str(), IN_OPEN | IN_ONLYDIR), 0);
    }
    // How often it was opened since the last call.
    int count() const
    {
        std::array<char, 4096> bytes {};
        const ssize_t length = ::read(descriptor_.get(), bytes.data(), bytes.size());
        int openings = 0;
        inotify_event event {};
        for (const char* at = bytes.data(); at < bytes.data() + length; at += sizeof event + event.len) {
            std::memcpy(&event, at, sizeof event);
            // With a name it is about a file in the directory.
            openings += event.len == 0 ? 1 : 0;
        }
        return openings;
    }

private:
    FileDescriptor descriptor_;
};

TEST_F(Bookmarks, WhatIsMissingIsSoughtAgainOnceItsDirectoriesHaveChanged)
{
    const Data bookmark = bookmarkOf(files.writeFile("up/dir/file"));
    files.makeDirectory("up/sib");
    files.rename("up/dir/file", "elsewhere");
    // As if nothing had been changed there for a minute.
    const auto past = std::filesystem::file_time_type::clock::now() - std::chrono::minutes(1);
    for (const char* directory : { "up", "up/dir", "up/sib" })
        std::filesystem::last_write_time(files.path(directory), past);
    const OpeningsOf siblings(files.path("up/sib"));
    EXPECT_EQ(resolved(bookmark), "error 2");
    EXPECT_EQ(siblings.count(), 1);
    EXPECT_EQ(resolved(bookmark), "error 2");
    EXPECT_EQ(siblings.count(), 0) << "nothing has changed";

    files.writeFile("up/sib/other");
    EXPECT_EQ(resolved(bookmark), "error 2");
    EXPECT_EQ(siblings.count(), 1);
    EXPECT_EQ(resolved(bookmark), "error 2");
    EXPECT_EQ(siblings.count(), 1) << "so lately changed that the next change might not show";
    files.rename("elsewhere", "up/sib/file");
    EXPECT_EQ(resolved(bookmark), files.path("up/sib/file") + " (stale)");
}

TEST_F(Bookmarks, SearchesOfOneOpeningShareOneBoundAndRepeatNothing)
{
    const Data far = bookmarkOf(files.writeFile("big/dir/file"));
    const Data near = bookmarkOf(files.writeFile("small/dir/file"));
    for (int i = 0; i < kMaximumSearchedDirectories; ++i)
        files.makeDirectory("big/" + std::to_string(i));
    files.remove("big/dir/file");
    const std::string renamed = files.rename("small/dir/file", "small/dir/renamed");
    EXPECT_EQ(resolved(near), renamed + " (stale)");
    for (const bool isFarsTurn : { true, false, true }) {
        const BookmarkSearchBound bound;
        const OpeningsOf directory(files.path("big/dir"));
        EXPECT_EQ(resolved(far), "error 2");
        EXPECT_EQ(resolved(far), "error 2");
        EXPECT_EQ(directory.count(), isFarsTurn ? 1 : 0);
        EXPECT_EQ(resolved(near), isFarsTurn ? "error 2" : renamed + " (stale)") << "the other has used up the bound";
    }
    EXPECT_EQ(resolved(near), renamed + " (stale)");
}

TEST_F(Bookmarks, AnotherFileSystemIsAnotherFile)
{
    const Bookmark one = sample();
    struct Case {
        const char* name;
        void (*change)(Bookmark&);
        bool isSame;
    };
    const Case cases[] = {
        { "inode", [](Bookmark& b) { b.identity.inode = 1; }, false },
        { "birth", [](Bookmark& b) { b.identity.birth->nanoseconds = 1; }, false },
        { "UUID", [](Bookmark& b) { b.fileSystemUUID = "x"; }, false },
        { "device after a restart", [](Bookmark& b) { b.identity.deviceMinor = 9; }, true },
        { "device, UUID unknown", [](Bookmark& b) { b.identity.deviceMinor = 9, b.fileSystemUUID.clear(); }, true },
        { "handle", [](Bookmark& b) { b.handle.back() = 1; }, false },
        { "device, UUID and birth unknown",
          [](Bookmark& b) { b.identity.deviceMinor = 9, b.fileSystemUUID.clear(), b.identity.birth.reset(); }, false },
    };
    for (const Case& c : cases) {
        Bookmark other = one;
        c.change(other);
        EXPECT_EQ(one.isSameFile(other), c.isSame) << c.name;
        EXPECT_EQ(other.isSameFile(one), c.isSame) << c.name;
    }
}

// A volume in memory, mounted at "media/stick", whose device the system's links give the UUID "AAAA-0001".
class Stick {
public:
    Stick()
    {
        mountAt(place, "tmpfs", 0);
        EXPECT_EQ(mount("none", "/dev", "tmpfs", 0, nullptr), 0);
        files.writeFile("media/stick/docs/file");
        files.writeFile("media/stick/other/letter");
        struct stat root { };
        EXPECT_EQ(stat(files.path("media/stick").c_str(), &root), 0);
        std::filesystem::create_directories("/dev/disk/by-uuid");
        EXPECT_EQ(mknod("/dev/disk/by-uuid/AAAA-0001", S_IFBLK | 0600, root.st_dev), 0);
    }
    ~Stick()
    {
        umount2("/dev", MNT_DETACH);
        umount2(files.path(place).c_str(), MNT_DETACH);
    }
    void move(const std::string& to)
    {
        mountAt(to, nullptr, MS_MOVE);
        place = to;
    }

    TemporaryDirectory files;
    std::string place = "media/stick";

private:
    void mountAt(const std::string& to, const char* type, unsigned long flags) const
    {
        EXPECT_EQ(mount(files.path(place).c_str(), files.makeDirectory(to).c_str(), type, flags, nullptr), 0);
    }
};

TEST_F(Bookmarks, LeadIntoAVolumeWhereverItIsNow)
{
    if (!MountNamespace::enter())
        return;
    if (!MountNamespace::isRootOfMachine())
        GTEST_SKIP() << "only root makes device files, and so a volume with a UUID";
    struct Case {
        const char* name;
        // What is renamed in the volume meanwhile, and to what; without a new name it is removed.
        std::string from;
        std::string to;
        bool isMountPointRemoved;
        // In the volume; empty where the file is missing.
        const char* found;
    };
    for (const Case& c : {
             Case { "unchanged", "", "", false, "/docs/file" },
             Case { "unchanged, mount point removed", "", "", true, "/docs/file" },
             Case { "replaced", "/other/letter", "/docs/file", false, "/docs/file" },
             Case { "replaced, mount point removed", "/other/letter", "/docs/file", true, "/docs/file" },
             Case { "renamed", "/docs/file", "/docs/renamed", true, "/docs/renamed" },
             Case { "in a sibling", "/docs/file", "/other/file", false, "/other/file" },
             Case { "deleted", "/docs/file", "", true, "" },
         }) {
        SCOPED_TRACE(c.name);
        Stick stick;
        const Data bytes = bookmarkOf(stick.files.path("media/stick/docs/file"));
        Bookmark ofAnother = *Bookmark::decode(bytes);
        EXPECT_EQ(ofAnother.fileSystemUUID, "AAAA-0001");
        stick.move("elsewhere/disk");
        if (c.isMountPointRemoved)
            stick.files.remove("media/stick");
        if (!c.to.empty())
            stick.files.rename(stick.place + c.from, stick.place + c.to);
        else if (!c.from.empty())
            stick.files.remove(stick.place + c.from);
        EXPECT_EQ(resolved(bytes), *c.found ? stick.files.path(stick.place) + c.found + " (stale)" : "error 2");
        ofAnother.fileSystemUUID = "BBBB-0002";
        EXPECT_EQ(resolved(ofAnother.encoded()), "error 2") << "another volume's file";
    }
}

TEST_F(Bookmarks, AreNotLookedForInOtherMounts)
{
    if (!MountNamespace::enter())
        return;
    const Data bytes = bookmarkOf(files.writeFile("up/dir/file"));
    const std::string sibling = files.makeDirectory("up/sibling");
    files.makeDirectory("far/away");
    files.rename("up/dir/file", "far/away/renamed");
    ASSERT_EQ(mount(files.path("far/away").c_str(), sibling.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_EQ(resolved(bytes), "error 2");
    ASSERT_EQ(umount2(sibling.c_str(), 0), 0);
    files.rename("far/away/renamed", "up/sibling/renamed");
    EXPECT_EQ(resolved(bytes), sibling + "/renamed (stale)");
}

TEST_F(Bookmarks, AreNotLookedForBeyondTheBound)
{
    if (!MountNamespace::enter())
        return;
    ASSERT_EQ(mount("none", files.path().c_str(), "tmpfs", 0, nullptr), 0) << "in memory it is quick";
    const Data bytes = bookmarkOf(files.writeFile("up/dir/file"));
    files.rename("up/dir/file", "up/renamed");
    for (int i = 0; i < kMaximumSearchedEntries; ++i)
        files.makeLink("up/dir/" + std::to_string(i), "x");
    EXPECT_EQ(resolved(bytes), "error 2");
    for (int i = 0; i < kMaximumSearchedEntries / 2; ++i)
        files.remove("up/dir/" + std::to_string(i));
    EXPECT_EQ(resolved(bytes), files.path("up/renamed (stale)"));
    EXPECT_EQ(umount2(files.path().c_str(), 0), 0) << "no directory was left open";
}

} // namespace
