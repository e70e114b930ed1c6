#include "LinuxWorkspace.h"
#include "XdgTree.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cstdlib>
#include <tuple>

namespace quillbox {
namespace {

    using testing::Contains;
    using testing::Each;
    using testing::EndsWith;
    using testing::Not;
    using Kind = NSWorkspace::EntryKind;

    // What a picture shows first, and every name that the theme is asked for.
    std::vector<std::string> themeNames(const NSImage& image)
    {
        const ImageContent content = image.source()->content();
        const auto* themed = std::get_if<ThemedImage>(&content);
        return themed ? themed->names : std::vector<std::string> { std::get<ImageFile>(content).path };
    }

    class FileIconsTest : public testing::Test {
    protected:
        XdgTree tree;
        LinuxWorkspace workspace { tree.keeper(), nullptr };
    };

    TEST_F(FileIconsTest, FilesShowWhatTheirNameTells)
    {
        const std::pair<const char*, const char*> cases[] = {
            { "SHOUTED.PDF", "application-pdf" },
            { "holiday.photo.jpg", "image-jpeg" },
            { "source.tar.gz", "application-x-compressed-tar" },
            { "not.a.tarball.gz", "application-gzip" },
            { "a.C", "text-x-c++src" },
            { "Makefile", "text-x-makefile" },
            { ".profile", "application-octet-stream" },
            { "bytes.\xFF\xFE", "application-octet-stream" },
        };
        for (const auto& [name, expected] : cases) {
            const auto names = themeNames(workspace.icon(std::string("/any/where.d/") + name, Kind::file));
            EXPECT_EQ(names.front(), expected) << name;
            EXPECT_THAT(names, testing::AllOf(Each(Not(EndsWith("-symbolic"))), Contains("text-x-generic"))) << name;
        }
    }

    TEST_F(FileIconsTest, PicturesStayRightHoweverManyEndingsThereAre)
    {
        const NSImage one = workspace.icon("/a/one.pdf", Kind::file);
        EXPECT_EQ(one.source(), workspace.icon("/b/two.three.pdf", Kind::file).source());
        for (int number = 0; number < 10'000; ++number)
            workspace.icon("/a/file.x" + std::to_string(number), Kind::file);
        EXPECT_EQ(themeNames(workspace.icon("/a/one.pdf", Kind::file)).front(), "application-pdf");
        EXPECT_EQ(themeNames(one).front(), "application-pdf");
    }

    TEST_F(FileIconsTest, EntriesOfOtherKindsAreLookedAtWhenTheyArePainted)
    {
        const std::string home = std::getenv("HOME");
        const std::tuple<std::string, Kind, std::string> cases[] = {
            { tree.path("to-file"), Kind::symbolicLink, "application-pdf" },
            { tree.path("to-link"), Kind::symbolicLink, "folder" },
            { tree.path("to-itself"), Kind::symbolicLink, "inode-symlink" },
            { tree.path("to-program"), Kind::symbolicLink, tree.path("Some.AppDir/.DirIcon") },
            { tree.path("pipe"), Kind::other, "inode-fifo" },
            { tree.path("gone"), Kind::unknown, "application-octet-stream" },
            { tree.path("X.plugin"), Kind::directory, "package-x-generic" },
            { home, Kind::unknown, "user-home" },
            { home + "/Desktop", Kind::directory, "user-desktop" },
        };
        std::vector<NSImage> icons;
        for (const auto& [path, kind, expected] : cases)
            icons.push_back(workspace.icon(path, kind));
        for (const char* directory : { "folder", "X.plugin" })
            tree.files().makeDirectory(directory);
        for (const char* file : { "target.pdf", "Some.AppDir/.DirIcon" })
            tree.files().writeFile(file);
        tree.files().makeLink("to-file", "target.pdf");
        tree.files().makeLink("to-folder.pdf", "folder");
        tree.files().makeLink("to-link", "to-folder.pdf");
        tree.files().makeLink("to-itself", "to-itself");
        tree.files().makeLink("to-program", "Some.AppDir");
        mkfifo(tree.path("pipe").c_str(), 0600);
        for (std::size_t index = 0; index < icons.size(); ++index)
            EXPECT_EQ(themeNames(icons[index]).front(), std::get<2>(cases[index])) << std::get<0>(cases[index]);
    }

    TEST_F(FileIconsTest, BundlesShowTheIconOfTheirEntryAndNoticeItsChange)
    {
        const std::string picture = tree.files().writeFile("picture.png", "pixels");
        const std::string bundle = tree.bundlePath("System/Applications/A.app");
        const std::pair<std::string, std::string> cases[] = {
            { "Icon=theme-name", "theme-name" }, { "Icon=file-name.png", "file-name" },
            { "Icon=" + picture, picture },      { "Icon=/no/such/picture.png", "application-x-executable" },
            { "", "application-x-executable" },
        };
        NSImage before;
        for (const auto& [line, expected] : cases) {
            tree.writeApplication("system", "a.desktop", "A", line);
            tree.update();
            const NSImage icon = workspace.icon(bundle, Kind::directory);
            EXPECT_EQ(themeNames(icon).front(), expected);
            EXPECT_NE(icon.source(), before.source());
            before = icon;
            EXPECT_EQ(workspace.icon(bundle).source(), before.source());
        }
    }

} // namespace
} // namespace quillbox
