#include "Bookmark.h"
#include "FileReferenceURL.h"
#include "TemporaryDirectory.h"
#include "URL.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

using namespace quillbox;

namespace {

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

// The mount of the test's files is the home's, so that references hold descriptors there.
class FileReference : public testing::Test {
protected:
    FileReference() { setenv("HOME", files.path().c_str(), 1); }
    const TemporaryDirectory files;
};

TEST_F(FileReference, FollowsMovesAndRenames)
{
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

TEST_F(FileReference, LeadsABookmarkToItsFile)
{
    const URL url = URL::fileURLWithPath(files.writeFile("a/file"));
    const Data bookmark = *url.bookmarkData();
    files.makeDirectory("far/away");
    bool isStale = false;
    {
        const FileReferenceURL reference = referenceTo(url.path());
        files.rename("a/file", "far/away/file");
        EXPECT_EQ(URL::resolvingBookmarkData(bookmark, isStale)->path(), files.path("far/away/file"));
        EXPECT_TRUE(isStale);
    }
    EXPECT_FALSE(URL::resolvingBookmarkData(bookmark, isStale)) << "too far to be looked for";
}

TEST_F(FileReference, KnowsWhatIsGone)
{
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

TEST_F(FileReference, HoldsFewDescriptorsAndNoneElsewhere)
{
    const std::string path = files.writeFile("file");
    const std::size_t before = openDescriptors();
    {
        const std::vector<std::string> paths(FileReferenceURL::kMaximumDescriptors + 20, path);
        std::vector<FileReferenceURL> references;
        std::transform(paths.begin(), paths.end(), std::back_inserter(references), referenceTo);
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
