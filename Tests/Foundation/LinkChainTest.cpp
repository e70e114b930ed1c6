#include "LinkChain.h"

#include "CanonicalPath.h"
#include "TemporaryDirectory.h"

#include <cerrno>
#include <gtest/gtest.h>

using namespace quillbox;

namespace {

// What the chain ends at; "none" where it is broken.
std::string endOf(const std::string& path)
{
    const auto end = endOfLinks(path);
    return end ? end->path : "none";
}

TEST(LinkChain, EndsAtWhatItsElementsLeadTo)
{
    const TemporaryDirectory files;
    const std::string file = files.writeFile("d/file");
    const std::string link = files.makeLink("d/link", "file");
    const std::string alias = files.writeFile("alias.desktop", "[Desktop Entry]\nType=Link\nURL=file://" + link + "\n");
    EXPECT_EQ(endOf(file), file);
    EXPECT_EQ(endOf(link), file);
    EXPECT_EQ(endOf(alias), file);
    EXPECT_EQ(endOf(files.makeLink("to alias", "alias.desktop")), file);
    EXPECT_EQ(endOf(files.makeLink("dangling", "nowhere")), "none");
    EXPECT_EQ(endOf(files.makeLink("circle", "circle")), "none");
    EXPECT_TRUE(*endOfLinks(files.makeLink("to directory", "d"))->values.isDirectory);
}

TEST(LinkChain, IsGivenUpPastItsBound)
{
    const TemporaryDirectory files;
    files.writeFile("0");
    for (int i = 1; i <= kMaximumLinkElements; ++i)
        files.makeLink(std::to_string(i), std::to_string(i - 1));
    EXPECT_EQ(endOf(files.path(std::to_string(kMaximumLinkElements - 1))), files.path("0"));
    EXPECT_EQ(endOf(files.path(std::to_string(kMaximumLinkElements))), "none");
}

TEST(CanonicalPath, HasTheKernelsMeaningNotThatOfTheText)
{
    const TemporaryDirectory files;
    files.makeDirectory("far/sub");
    const std::string file = files.writeFile("far/file");
    files.writeFile("file", "what the text would mean");
    files.makeLink("link", "far/sub");
    EXPECT_EQ(*canonicalPath(files.path("link/../file")), file);
    EXPECT_EQ(*canonicalPath(files.path("far//./file")), file);
    const std::string chained = endOf(files.makeLink("far/sub/x", "../file"));
    EXPECT_EQ(*canonicalPath(chained), file);
    EXPECT_EQ(canonicalPath(files.path("gone/../file")).error().code, ENOENT);
    EXPECT_FALSE(canonicalPath(std::string("/\0", 2)) || canonicalPath(""));
}

} // namespace
