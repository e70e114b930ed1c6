#include "TypedPath.h"

#include "FileManager.h"
#include "Installed.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

using namespace quillbox;

namespace {

struct Homes final : StandardDirectories {
    std::vector<URL> urls(SearchPathDirectory, SearchPathDomainMask) override { return {}; }
    URL homeDirectory() override { return URL::fileURLWithPath("/home/me"); }
};

TEST(TypedPath, StandsForTheBytesThatAreShownLikeIt)
{
    Homes homes;
    const Installed<StandardDirectories> installed(homes);
    const TemporaryDirectory directory;
    directory.writeFile("a\xe9/x\xff");
    directory.writeFile("a\xe9/ blank ");
    const std::string base = directory.path("a\xe9");
    const std::string shownBase = directory.path("a\uFFFD");
    const std::pair<std::string, std::string> cases[] = {
        { "~", "/home/me" },
        { "~/b/../c/", "/home/me/c" },
        { "/", "/" },
        { "/../x", "/x" },
        { "y/./z", base + "/y/z" },
        { "..", directory.path() },
        { "file:///a%20b/./c%e9/", "/a b/c\xe9" },
        { " file://localhost/a/../b ", "/b" },
        { " ~/b\n", "/home/me/b" },
        { " blank ", base + "/ blank " },
        { " y ", base + "/y" },
        { shownBase, base },
        { shownBase + "/x\uFFFD", base + "/x\xff" },
        // Not below the directory shown, and not there at all.
        { directory.path("a\uFFFDb"), directory.path("a\uFFFDb") },
    };
    for (const auto& [text, path] : cases)
        EXPECT_EQ(typedPath(QString::fromStdString(text), base), path) << text;
    EXPECT_EQ(typedContinuations("x", base), QStringList({ " blank ", "x\uFFFD" }));
    EXPECT_EQ(typedContinuations("../", base), QStringList("../a\uFFFD/"));
    EXPECT_EQ(typedContinuations("file:///", base), QStringList());
}

} // namespace
