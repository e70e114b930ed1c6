#include "LinuxPlaces.h"

#include "FileManager.h"
#include "Installed.h"
#include "MountNamespace.h"
#include "StallingVolume.h"
#include "TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillbox {
namespace {

    constexpr const char* kPlasma = "<xbel><bookmark href='file://TOP/Music'><title>Twice</title></bookmark>"
                                    "<bookmark href='file://TOP/Letters'><title>Post &amp; bills</title></bookmark>"
                                    "<bookmark href='file:///usr'><info><metadata><isSystemItem>true</isSystemItem>"
                                    "</metadata></info></bookmark>"
                                    "<bookmark href='file:///etc'><info><metadata/><metadata><IsHidden>true</IsHidden>"
                                    "</metadata></info></bookmark>"
                                    "<bookmark href='file:///var'><title>Damaged</tit";

    struct Person final : StandardDirectories {
        std::vector<URL> urls(SearchPathDirectory directory, SearchPathDomainMask) override
        {
            if (directory != SearchPathDirectory::musicDirectory && directory != SearchPathDirectory::moviesDirectory)
                return {};
            return { homeDirectory().appendingPathComponent(
                directory == SearchPathDirectory::musicDirectory ? "Music" : "Not there") };
        }
        URL homeDirectory() override { return URL::fileURLWithPath(files.path()); }

        std::string withHome(std::string text) const
        {
            for (std::size_t at = 0; (at = text.find("TOP", at)) != std::string::npos; at += files.path().size())
                text.replace(at, 3, files.path());
            return text;
        }
        // "title path" of all but volumes, which the machine may have.
        std::vector<std::string> listed()
        {
            XdgEnvironment environment;
            environment.configHome = files.path("config");
            environment.dataHome = files.path("data");
            std::vector<std::string> lines;
            for (const Place& place : LinuxPlaces(environment).places()) {
                if (place.kind != Place::Kind::volume)
                    lines.push_back(place.title + (place.mayHang ? " ? " : " ") + place.path);
            }
            return lines;
        }

        TemporaryDirectory files;
        Installed<StandardDirectories> installed { *this };
    };

    TEST(LinuxPlaces, AreTheDirectoriesOfThePersonAndTheBookmarksOfBothDesktopsEachOnce)
    {
        Person person;
        for (const char* name : { "Music", "caf\xe9", "Letters" })
            person.files.makeDirectory(name);
        person.files.writeFile("file");
        const auto listedWith = [&](const char* file, const std::string& text) {
            person.files.writeFile(file, person.withHome(text));
            std::vector<std::string> lines = person.listed();
            for (std::string& line : lines) {
                if (const auto at = line.find(person.files.path()); at != std::string::npos)
                    line.replace(at, person.files.path().size(), "TOP");
            }
            EXPECT_THAT(std::vector(lines.begin(), lines.begin() + 3),
                        testing::ElementsAre("Home TOP", "Music TOP/Music", "File System /"));
            return std::vector(lines.begin() + 3, lines.end());
        };
        EXPECT_THAT(listedWith(".gtk-bookmarks", "file:///usr Old"), testing::ElementsAre("Old /usr"));
        EXPECT_THAT(listedWith("config/gtk-3.0/bookmarks",
                               "file://TOP/caf%E9  A b \r\n\nfile:///gone\nfile://TOP/file\nnonsense\n"
                               "sftp://server/usr\nfile:///usr%zz\nfile:///usr%00\nfile:///usr"),
                    testing::ElementsAre("A b TOP/caf\xe9", "usr /usr"));
        EXPECT_THAT(listedWith("data/user-places.xbel", kPlasma),
                    testing::ElementsAre("A b TOP/caf\xe9", "usr /usr", "Post & bills TOP/Letters", "Damaged /var"));
        EXPECT_THAT(listedWith("config/gtk-3.0/bookmarks", std::string((1 << 20) + 1, '\n')),
                    testing::ElementsAre("Post & bills TOP/Letters", "Damaged /var"));
    }

    TEST(LinuxPlaces, AreListedUnaskedWhereAMountMayNotAnswer)
    {
        if (!MountNamespace::enter())
            return;
        Person person;
        person.files.makeDirectory("served/inner");
        const std::string mounted = person.files.makeDirectory("mounted");
        person.files.makeLink("link", mounted + "/inner");
        const StallingVolume volume(person.files.path("served"), mounted, person.files.path("gate"));
        if (!volume.reasonItCannotBe().empty())
            GTEST_SKIP() << volume.reasonItCannotBe();
        person.files.writeFile("config/gtk-3.0/bookmarks",
                               person.withHome("file://TOP/mounted/inner\nfile://TOP/link\n"));
        volume.stopAnswering();
        EXPECT_THAT(person.listed(),
                    testing::IsSupersetOf({ "inner ? " + mounted + "/inner", "link ? " + person.files.path("link") }));
    }

} // namespace
} // namespace quillbox
