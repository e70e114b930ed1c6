#include "Bookmark.h"

#include "FileManager.h"
#include "FileReferenceURL.h"
#include "TemporaryDirectory.h"
#include "Unprivileged.h"
#include "URL.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>
#include <sys/sysmacros.h>

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

TEST(Bookmark, ALinkStaysTheLink)
{
    const TemporaryDirectory files;
    files.writeFile("target");
    const Data bookmark = bookmarkOf(files.makeLink("link", "target"));
    files.rename("link", "renamed");
    EXPECT_EQ(resolved(bookmark), files.path("renamed") + " (stale)");
}

TEST(Bookmark, WhateverIsAtThePathComesFirst)
{
    const TemporaryDirectory files;
    const Data bookmark = bookmarkOf(files.writeFile("notes", "old"));
    files.rename("notes", "notes~");
    files.writeFile("notes", "new");
    EXPECT_EQ(resolved(bookmark), files.path("notes") + " (stale)");
}

TEST(Bookmark, FindsAFileRenamedInItsDirectory)
{
    const TemporaryDirectory files;
    const Data bookmark = bookmarkOf(files.writeFile("a/file"));
    const Data directory = bookmarkOf(files.makeDirectory("a/folder"));
    files.rename("a/file", "a/other");
    files.rename("a/folder", "a/moved folder");
    EXPECT_EQ(resolved(bookmark), files.path("a/other") + " (stale)");
    EXPECT_EQ(resolved(directory), files.path("a/moved folder") + " (stale)");
    files.remove("a/other");
    EXPECT_EQ(resolved(bookmark), "error 2");
    files.writeFile("a/newcomer");
    EXPECT_EQ(resolved(bookmark), "error 2") << "an inode used again is another file";
    files.remove("a");
    EXPECT_EQ(resolved(bookmark), "error 2");
    files.writeFile("a");
    EXPECT_EQ(resolved(bookmark), "error 20");
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
        { "handle, birth unknown", [](Bookmark& b) { b.identity.birth.reset(), b.handle.back() = 1; }, false },
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

TEST(Bookmark, FindsTheUUIDOfADevice)
{
    const TemporaryDirectory links;
    links.makeLink("0000-AAAA", "/dev/zero");
    links.makeLink("1111-BBBB", "/dev/null");
    links.makeLink("2222-CCCC", "/nowhere");
    struct stat null { };
    ASSERT_EQ(stat("/dev/null", &null), 0);
    EXPECT_EQ(fileSystemUUID(null.st_rdev, links.path()), "1111-BBBB");
    EXPECT_EQ(fileSystemUUID(makedev(250, 250), links.path()), "");
    EXPECT_EQ(fileSystemUUID(null.st_rdev, links.path("none")), "");
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
