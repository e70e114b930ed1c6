#include "URL.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace quillbox;

namespace {

TEST(Path, ComponentsAndExtensions)
{
    struct Case {
        std::string path, last, extension, withoutExtension, above;
    };
    const Case cases[] = {
        { "/a/b.txt", "b.txt", "txt", "/a/b", "/a" },
        { "/a/b.txt/", "b.txt", "txt", "/a/b", "/a" },
        { "/a", "a", "", "/a", "/" },
        { "/", "/", "", "/", "/" },
        { "", "", "", "", "" },
        { "/x/.bashrc", ".bashrc", "", "/x/.bashrc", "/x" },
        { "/x/ends.", "ends.", "", "/x/ends.", "/x" },
        { "/x/Mr. Smith", "Mr. Smith", "", "/x/Mr. Smith", "/x" },
        { "/x.d/plain", "plain", "", "/x.d/plain", "/x.d" },
        { "/a//b", "b", "", "/a//b", "/a" },
    };
    for (const Case& c : cases) {
        EXPECT_EQ(path::lastPathComponent(c.path), c.last) << c.path;
        EXPECT_EQ(path::pathExtension(c.path), c.extension) << c.path;
        EXPECT_EQ(path::deletingPathExtension(c.path), c.withoutExtension) << c.path;
        EXPECT_EQ(path::deletingLastPathComponent(c.path), c.above) << c.path;
    }
    for (const auto& [directory, component] :
         { std::pair("/a", "b"), { "/a/", "b" }, { "/a", "/b" }, { "/a//", "//b" } })
        EXPECT_EQ(path::appending(directory, component), "/a/b");
    EXPECT_EQ(path::appending("/", "a"), "/a");
}

TEST(URL, AbsoluteStringsGoBothWays)
{
    for (const auto& [path, text] : { std::pair("/a b/c%d", "file:///a%20b/c%25d"),
                                      { "/a/", "file:///a/" },
                                      { "/", "file:///" },
                                      { "/q?#;&", "file:///q%3F%23%3B&" },
                                      { "/\u00e9\xff\n", "file:///%C3%A9%FF%0A" } }) {
        const URL url = URL::fileURLWithPath(path);
        EXPECT_EQ(url.absoluteString(), text);
        EXPECT_EQ(*URL::fromString(text), url);
    }
    EXPECT_EQ(URL::fromString("FILE://localhost/a%2e")->path(), "/a.");
    EXPECT_EQ(URL::fromString("file:/a")->path(), "/a");
}

TEST(URL, RefusesOtherTexts)
{
    for (const char* text :
         { "", "file:", "file://", "http://a/b", "file://host/a", "file:a", "/a", "file:///a%", "file:///a%2",
           "file:///a%zz", "file:///a%00b", "file:///a%2Fb", "file:///a?b", "file:///a#b" })
        EXPECT_FALSE(URL::fromString(text)) << text;
}

TEST(URL, KeepsTheBytesOfThePath)
{
    EXPECT_EQ(URL::fileURLWithPath("/a//b/../c///").path(), "/a//b/../c");
    EXPECT_EQ(URL::fileURLWithPath("").path(), "");
    EXPECT_EQ(URL::fileURLWithPath("x/y").path(), std::filesystem::current_path() / "x/y");
    EXPECT_EQ(URL::fileURLWithPath("/a").appendingPathComponent("b/").absoluteString(), "file:///a/b/");
}

TEST(URL, StandardFormIsTakenFromTheTextAlone)
{
    for (const auto& [given, standard] : { std::pair("/a/./b//c/../d/", "file:///a/b/d/"),
                                           { "/../..", "file:///" },
                                           { "/a/..", "file:///" },
                                           { "/a/...", "file:///a/..." } })
        EXPECT_EQ(URL::fileURLWithPath(given).standardized().absoluteString(), standard);
}

} // namespace
