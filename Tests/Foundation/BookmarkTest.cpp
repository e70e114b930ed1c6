#include "Bookmark.h"

#include "BookmarkSearch.h"
#include "FileDescriptor.h"
#include "FileManager.h"
#include "FileReferenceURL.h"
#include "TemporaryDirectory.h"
#include "Unprivileged.h"
#include "URL.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <sys/inotify.h>
#include <sys/stat.h>

using namespace quillbox;

namespace {

// Makes the mount of the test's files the home's, so that references hold descriptors there.
class HomeAt {
public:
    explicit HomeAt(const std::string& path)
    {
        if (const char* home = std::getenv("HOME"))
            before_ = home;
        setenv("HOME", path.c_str(), 1);
    }
    ~HomeAt() { before_ ? setenv("HOME", before_->c_str(), 1) : unsetenv("HOME"); }
    HomeAt(const HomeAt&) = delete;
    HomeAt& operator=(const HomeAt&) = delete;

private:
    std::optional<std::string> before_;
};

Data bookmarkOf(const std::string& path)
{
    Result<Data> bookmark = URL::fileURLWithPath(path).bookmarkData();
    EXPECT_TRUE(bookmark) << path;
    return bookmark ? *bookmark : Data {};
}

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

TEST(Bookmark, FormatIsFixed)
{
    const Data expected {
        'Q',  'B',  'b',  'k',  1,    5,   0,   0,   0,   5,   '/',  'a',  '/',  'b',  0xff, 0,    0,
        0,    9,    '1',  '2',  '3',  '4', '-', 'A', 'B', 'C', 'D',  0,    0,    0,    8,    0,    0,
        0,    1,    0,    0,    0,    0,   0,   0,   0,   77,  0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff,
        0xfb, 0x3b, 0x9a, 0xc9, 0xff, 0,   0,   0,   5,   0,   0,    0,    1,    9,
    };
    Data bytes = sample().encoded();
    ASSERT_EQ(bytes.size(), expected.size() + 4);
    EXPECT_EQ(Data(bytes.begin(), bytes.end() - 4), expected);
    const Result<Bookmark> read = Bookmark::decode(bytes);
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, sample());
}

TEST(Bookmark, DamageIsAnErrorAlways)
{
    const TemporaryDirectory files;
    const Data whole = bookmarkOf(files.writeFile("file"));
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_FALSE(Bookmark::decode(Data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(i)))) << i;
        for (int bit = 0; bit < 8; ++bit) {
            Data damaged = whole;
            damaged[i] ^= static_cast<std::uint8_t>(1 << bit);
            EXPECT_FALSE(Bookmark::decode(damaged)) << i;
        }
    }
    Data longer = whole;
    longer.push_back(0);
    EXPECT_FALSE(Bookmark::decode(longer));
    Data newer = whole;
    newer[4] = 2;
    EXPECT_NE(Bookmark::decode(newer).error().what.find("version 2"), std::string::npos);
    EXPECT_EQ(resolved(Data(100000, 0xff)), "error 22");
}

TEST(Bookmark, BytesWithTheRightSumButWrongFieldsAreAnError)
{
    for (const std::string& path : { std::string("relative"), std::string(), std::string("/a\0b", 4) }) {
        Bookmark bookmark = sample();
        bookmark.path = path;
        EXPECT_FALSE(Bookmark::decode(bookmark.encoded())) << path;
    }
}

TEST(Bookmark, ResolvesWhatIsAtThePath)
{
    const TemporaryDirectory files;
    for (const std::string& path : { files.writeFile("file"), files.makeDirectory("folder"),
                                     files.makeLink("dangling", "no"), files.writeFile("bytes\xff\n") })
        EXPECT_EQ(resolved(bookmarkOf(path)), path);
    bool isStale = false;
    const URL withSlash = URL::fileURLWithPath(files.path("folder/"));
    EXPECT_EQ(*URL::resolvingBookmarkData(*withSlash.bookmarkData(), isStale), withSlash);
    EXPECT_EQ(URL::fileURLWithPath(files.path("none")).bookmarkData().error().code, ENOENT);
}

struct Move {
    const char* name;
    void (*change)(const TemporaryDirectory&);
    // Where the picked "up/dir/file" is found then; empty where it is missing.
    const char* found;
    bool isOfFilesOnly = false;
};

// File systems stamp files by a coarse clock; within its tick only a handle tells an inode used again, and
// not every one has handles.
void waitForNextBirthTime()
{
    const auto now = [] {
        timespec time {};
        clock_gettime(CLOCK_REALTIME_COARSE, &time);
        return time.tv_nsec;
    };
    for (const auto before = now(); now() == before;) { }
}

TEST(Bookmark, FindsWhatHasLeftItsPathAfterARestart)
{
    using Files = const TemporaryDirectory&;
    for (const Move& c : {
             Move { "saved by an editor",
                    [](Files f) { f.rename("up/dir/file", "up/dir/file~"), f.writeFile("up/dir/file"); },
                    "up/dir/file" },
             Move { "renamed", [](Files f) { f.rename("up/dir/file", "up/dir/b"); }, "up/dir/b" },
             Move { "in the parent", [](Files f) { f.rename("up/dir/file", "up/b"); }, "up/b" },
             Move { "in a sibling", [](Files f) { f.rename("up/dir/file", "up/sib/b"); }, "up/sib/b" },
             Move { "directory renamed", [](Files f) { f.rename("up/dir", "up/new"); }, "up/new/file" },
             Move { "in its parent's place",
                    [](Files f) { f.rename("up/dir/file", "b"), f.remove("up/dir"), f.rename("b", "up/dir"); },
                    "up/dir" },
             Move { "below a sibling", [](Files f) { f.rename("up/dir/file", "up/sib/low/b"); }, "" },
             Move { "behind a link",
                    [](Files f) { f.rename("up/dir/file", "far/off/b"), f.makeLink("up/link", "../far/off"); }, "" },
             Move { "hard-linked",
                    [](Files f) {
                        std::filesystem::create_hard_link(f.path("up/dir/file"), f.path("up/sib/same"));
                        f.remove("up/dir/file");
                    },
                    "up/sib/same", true },
             Move { "deleted, its inode used again",
                    [](Files f) {
                        f.remove("up/dir/file");
                        waitForNextBirthTime();
                        f.writeFile("up/dir/newcomer");
                    },
                    "" },
         }) {
        for (const char* kind : { "file", "directory", "link" }) {
            const TemporaryDirectory files;
            files.makeDirectory("up/sib/low");
            files.makeDirectory("far/off");
            const std::string picked = *kind == 'f' ? files.writeFile("up/dir/file")
                : *kind == 'd'                      ? files.makeDirectory("up/dir/file")
                                                    : files.makeLink("up/dir/file", "nowhere");
            if (c.isOfFilesOnly && *kind != 'f')
                continue;
            const Data bookmark = bookmarkOf(picked);
            c.change(files);
            EXPECT_EQ(resolved(bookmark), *c.found ? files.path(c.found) + " (stale)" : "error 2")
                << c.name << ", " << kind;
        }
    }
}

// Hears of every opening of a directory.
class OpeningsOf {
public:
    explicit OpeningsOf(const std::string& directory) : descriptor_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        EXPECT_GE(::inotify_add_watch(descriptor_.get(), directory.c_str(), IN_OPEN | IN_ONLYDIR), 0);
    }
    // How often it was opened since the last call.
    int count()
    {
        std::array<char, 4096> bytes {};
        const ssize_t length = ::read(descriptor_.get(), bytes.data(), bytes.size());
        int openings = 0;
        for (ssize_t position = 0; position < length;) {
            inotify_event event {};
            std::memcpy(&event, bytes.data() + position, sizeof event);
            // With a name it is about a file in the directory.
            openings += event.len == 0 ? 1 : 0;
            position += static_cast<ssize_t>(sizeof event) + event.len;
        }
        return openings;
    }

private:
    FileDescriptor descriptor_;
};

// Makes the directory look as if nothing had been changed there for a minute.
void settle(const std::string& directory)
{
    std::filesystem::last_write_time(directory,
                                     std::filesystem::file_time_type::clock::now() - std::chrono::minutes(1));
}

TEST(Bookmark, WhatIsMissingIsSoughtAgainOnceItsDirectoriesHaveChanged)
{
    const TemporaryDirectory files;
    const Data bookmark = bookmarkOf(files.writeFile("up/dir/file"));
    files.makeDirectory("up/sib");
    files.rename("up/dir/file", "elsewhere");
    for (const char* directory : { "up", "up/dir", "up/sib" })
        settle(files.path(directory));
    OpeningsOf siblings(files.path("up/sib"));
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

TEST(Bookmark, SearchesOfOneOpeningShareOneBoundAndRepeatNothing)
{
    const TemporaryDirectory files;
    const Data far = bookmarkOf(files.writeFile("big/dir/file"));
    const Data near = bookmarkOf(files.writeFile("small/dir/file"));
    for (int i = 0; i < kMaximumSearchedDirectories; ++i)
        files.makeDirectory("big/" + std::to_string(i));
    files.remove("big/dir/file");
    const std::string renamed = files.rename("small/dir/file", "small/dir/renamed");
    EXPECT_EQ(resolved(near), renamed + " (stale)");
    {
        const BookmarkSearchBound bound;
        OpeningsOf directory(files.path("big/dir"));
        EXPECT_EQ(resolved(far), "error 2");
        EXPECT_EQ(resolved(far), "error 2");
        EXPECT_EQ(directory.count(), 1);
        EXPECT_EQ(resolved(near), "error 2") << "nothing is left for it";
    }
    EXPECT_EQ(resolved(near), renamed + " (stale)");
}

TEST(Bookmark, FollowsALiveReference)
{
    const TemporaryDirectory files;
    const HomeAt home(files.path());
    const URL url = URL::fileURLWithPath(files.writeFile("a/file"));
    const Data bookmark = *url.bookmarkData();
    files.makeDirectory("far/away");
    {
        const Result<FileReferenceURL> reference = url.fileReferenceURL();
        ASSERT_TRUE(reference);
        files.rename("a/file", "far/away/file");
        EXPECT_EQ(resolved(bookmark), files.path("far/away/file") + " (stale)");
    }
    EXPECT_EQ(resolved(bookmark), "error 2");
}

TEST(Bookmark, AnotherFileSystemIsAnotherFile)
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

TEST(Bookmark, RefusedLooksAreErrors)
{
    const TemporaryDirectory files;
    const Data bookmark = bookmarkOf(files.writeFile("closed/file"));
    ASSERT_EQ(chmod(files.path("closed").c_str(), 0), 0);
    ASSERT_EQ(chmod(files.path().c_str(), 0755), 0);
    EXPECT_EQ(runWithoutPrivileges([&] { return resolved(bookmark); }), "error 13");
    ASSERT_EQ(chmod(files.path("closed").c_str(), 0755), 0);
}

std::size_t openDescriptors()
{
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

FileReferenceURL referenceTo(const std::string& path)
{
    Result<FileReferenceURL> reference = URL::fileURLWithPath(path).fileReferenceURL();
    EXPECT_TRUE(reference);
    return *reference;
}

TEST(FileReference, FollowsMovesAndRenames)
{
    const TemporaryDirectory files;
    const HomeAt home(files.path());
    const FileReferenceURL file = referenceTo(files.writeFile("a/file"));
    const FileReferenceURL link = referenceTo(files.makeLink("a/link", "file"));
    EXPECT_EQ(file.path(), files.path("a/file"));
    files.rename("a", "b");
    EXPECT_EQ(file.path(), files.path("b/file"));
    files.rename("b/file", "moved");
    EXPECT_EQ(file.path(), files.path("moved"));
    EXPECT_EQ(link.path(), files.path("b/link"));
    EXPECT_FALSE(URL::fileURLWithPath(files.path("a/file")).fileReferenceURL());
}

TEST(FileReference, KnowsWhatIsGone)
{
    const TemporaryDirectory files;
    const HomeAt home(files.path());
    const FileReferenceURL replaced = referenceTo(files.writeFile("replaced"));
    files.writeFile("new");
    files.rename("new", "replaced");
    EXPECT_FALSE(replaced.path());
    const FileReferenceURL deleted = referenceTo(files.writeFile("gone"));
    files.remove("gone");
    files.writeFile("gone (deleted)");
    EXPECT_FALSE(deleted.path()) << "a file of the name that the deleted one's link shows";
    const FileReferenceURL odd = referenceTo(files.path("gone (deleted)"));
    EXPECT_EQ(odd.path(), files.path("gone (deleted)"));
}

TEST(FileReference, HoldsFewDescriptorsAndNoneElsewhere)
{
    const TemporaryDirectory files;
    const HomeAt home(files.path());
    const std::string path = files.writeFile("file");
    const std::size_t before = openDescriptors();
    {
        std::vector<FileReferenceURL> references;
        references.reserve(FileReferenceURL::kMaximumDescriptors + 20);
        for (int i = 0; i < FileReferenceURL::kMaximumDescriptors + 20; ++i)
            references.push_back(referenceTo(path));
        EXPECT_EQ(openDescriptors(), before + FileReferenceURL::kMaximumDescriptors);
        const FileReferenceURL copy = references.back();
        EXPECT_EQ(copy.path(), path) << "past the most, the last path does";
        files.rename("file", "other");
        EXPECT_EQ(references.front().path(), files.path("other"));
        EXPECT_FALSE(copy.path());
    }
    EXPECT_EQ(openDescriptors(), before);
    const FileReferenceURL elsewhere = referenceTo("/proc/version");
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(elsewhere.path(), "/proc/version");
}

} // namespace
