#include "LinuxWorkspace.h"
#include "XdgTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

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
        std::string first(std::string_view path, Kind kind) { return themeNames(workspace.icon(path, kind)).front(); }

        XdgTree tree;
        ApplicationBundles bundles { tree.environment, nullptr };
        LinuxWorkspace workspace { bundles, nullptr };
    };

    struct NameCase {
        const char* name;
        const char* icon;
        friend void PrintTo(const NameCase& row, std::ostream* out) { *out << row.name; }
    };

    class FileIconOf : public FileIconsTest, public testing::WithParamInterface<NameCase> { };

    TEST_P(FileIconOf, TheName)
    {
        const NSImage icon = workspace.icon(std::string("/any/where.d/") + GetParam().name, Kind::file);
        EXPECT_EQ(themeNames(icon).front(), GetParam().icon);
        EXPECT_THAT(themeNames(icon), Each(Not(EndsWith("-symbolic"))));
        EXPECT_THAT(themeNames(icon), Contains("text-x-generic"));
    }

    INSTANTIATE_TEST_SUITE_P(
        Table, FileIconOf,
        testing::Values(NameCase { "paper.pdf", "application-pdf" }, NameCase { "SHOUTED.PDF", "application-pdf" },
                        NameCase { "holiday.photo.jpg", "image-jpeg" }, NameCase { ".hidden.png", "image-png" },
                        NameCase { "source.tar.gz", "application-x-compressed-tar" },
                        NameCase { "source.gz", "application-gzip" },
                        NameCase { "not.a.tarball.gz", "application-gzip" },
                        NameCase { "figure.svg.gz", "image-svg+xml-compressed" }, NameCase { "a.C", "text-x-c++src" },
                        NameCase { "a.c", "text-x-csrc" }, NameCase { "Makefile", "text-x-makefile" },
                        NameCase { "README", "text-x-readme" }, NameCase { "noending", "application-octet-stream" },
                        NameCase { ".profile", "application-octet-stream" },
                        NameCase { "ends.", "application-octet-stream" },
                        NameCase { "bytes.\xFF\xFE", "application-octet-stream" },
                        NameCase { "Minutes of 3. September in the evening", "application-octet-stream" }));

    TEST_F(FileIconsTest, FilesOfOneEndingShareASource)
    {
        const NSImage one = workspace.icon("/a/one.pdf", Kind::file);
        EXPECT_EQ(one.source(), workspace.icon("/b/two.three.pdf", Kind::file).source());
        EXPECT_NE(one.source(), workspace.icon("/a/one.png", Kind::file).source());
        EXPECT_EQ(one.source()->name(), "icon of *.pdf");
        EXPECT_EQ(workspace.icon("/a", Kind::directory).source(), workspace.icon("/b", Kind::directory).source());
        // However many endings there are, a picture stays right.
        for (int number = 0; number < 10'000; ++number)
            workspace.icon("/a/file.x" + std::to_string(number), Kind::file);
        EXPECT_EQ(first("/a/one.pdf", Kind::file), "application-pdf");
        EXPECT_EQ(themeNames(one).front(), "application-pdf");
    }

    TEST_F(FileIconsTest, PathsAreLookedAtWhenTheyArePainted)
    {
        const NSImage link = workspace.icon(tree.path("link"), Kind::symbolicLink);
        const NSImage unknown = workspace.icon(tree.path("unknown"));
        const NSImage bundle = workspace.icon(tree.path("user/quillbox/bundles/System/Applications/A.app"));
        tree.files().writeFile("target.pdf");
        tree.files().makeLink("link", "target.pdf");
        tree.files().makeDirectory("unknown");
        tree.writeApplication("system", "a.desktop", "A", "Icon=org.example.A");
        bundles.bringUpToDate();
        EXPECT_EQ(themeNames(link).front(), "application-pdf");
        EXPECT_EQ(themeNames(unknown).front(), "folder");
        EXPECT_EQ(themeNames(bundle).front(), "org.example.A");
    }

    TEST_F(FileIconsTest, LinksShowWhatTheyLeadTo)
    {
        tree.files().makeDirectory("folder");
        tree.files().makeDirectory("Some.AppDir");
        tree.files().writeFile("Some.AppDir/.DirIcon", "picture");
        tree.files().makeLink("to-folder.pdf", "folder");
        tree.files().makeLink("to-link", "to-folder.pdf");
        tree.files().makeLink("to-nothing", "nothing");
        tree.files().makeLink("to-itself", "to-itself");
        tree.files().makeLink("to-program", "Some.AppDir");
        mkfifo(tree.path("pipe").c_str(), 0600);
        EXPECT_EQ(first(tree.path("to-folder.pdf"), Kind::symbolicLink), "folder");
        EXPECT_EQ(first(tree.path("to-link"), Kind::symbolicLink), "folder");
        EXPECT_EQ(first(tree.path("to-nothing"), Kind::symbolicLink), "inode-symlink");
        EXPECT_EQ(first(tree.path("to-itself"), Kind::symbolicLink), "inode-symlink");
        EXPECT_EQ(first(tree.path("to-program"), Kind::symbolicLink), tree.path("Some.AppDir/.DirIcon"));
        EXPECT_EQ(first(tree.path("pipe"), Kind::other), "inode-fifo");
        EXPECT_EQ(first(tree.path("gone"), Kind::unknown), "application-octet-stream");
    }

    TEST_F(FileIconsTest, PlacesAndPackagesHaveTheirOwn)
    {
        const std::string home = std::getenv("HOME");
        EXPECT_EQ(first(home, Kind::directory), "user-home");
        EXPECT_EQ(first(home, Kind::unknown), "user-home");
        EXPECT_EQ(first(home + "/Desktop", Kind::directory), "user-desktop");
        EXPECT_EQ(first(home + "/other", Kind::directory), "folder");
        tree.files().makeDirectory("X.plugin");
        EXPECT_EQ(first(tree.path("X.plugin"), Kind::directory), "package-x-generic");
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
        const ImageSource* before = nullptr;
        for (const auto& [line, expected] : cases) {
            tree.writeApplication("system", "a.desktop", "A", line);
            bundles.bringUpToDate();
            const NSImage icon = workspace.icon(bundle, Kind::directory);
            EXPECT_EQ(themeNames(icon).front(), expected);
            EXPECT_NE(icon.source(), before);
            before = icon.source();
            EXPECT_EQ(workspace.icon(bundle).source(), before);
        }
    }

    TEST_F(FileIconsTest, SystemImagesAreFoundByName)
    {
        for (const std::string_view name :
             { NSImageNameStatusUnavailable, NSImageNameStatusNone, NSImageNameAdvanced,
               NSImageNameRevealFreestandingTemplate, NSImageNamePreferencesGeneral, NSImageNameInfo }) {
            const auto image = workspace.systemImage(name);
            ASSERT_TRUE(image) << name;
            EXPECT_EQ(image->source()->name(), name);
            EXPECT_EQ(image->isTemplate(), name == NSImageNameRevealFreestandingTemplate);
            EXPECT_EQ(image->source(), workspace.systemImage(name)->source());
        }
        EXPECT_EQ(themeNames(*workspace.systemImage(NSImageNamePreferencesGeneral)).front(), "preferences-system");
        EXPECT_FALSE(workspace.systemImage("NSNoSuchImage"));
    }

} // namespace
} // namespace quillbox
