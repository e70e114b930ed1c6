#include "LinuxStandardDirectories.h"

#include "XdgTree.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace quillbox {
namespace {

    using testing::ElementsAre;
    using testing::IsEmpty;
    using Directory = SearchPathDirectory;
    using Mask = SearchPathDomainMask;

    class StandardDirectoriesTest : public testing::Test {
    protected:
        ~StandardDirectoriesTest() override
        {
            // GLib keeps what was set last, also when the file has gone.
            setUserDirectories("XDG_DESKTOP_DIR=\"$HOME/Desktop\"\nXDG_DOCUMENTS_DIR=\"$HOME/Documents\"\n"
                               "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"\n");
            paths(Directory::desktopDirectory, Mask::userDomainMask);
            std::filesystem::remove(home + "/config/user-dirs.dirs");
            std::filesystem::remove_all(home + "/Applications");
        }

        std::vector<std::string> paths(Directory directory, Mask domains)
        {
            std::vector<std::string> found;
            for (const URL& url : directories.urls(directory, domains))
                found.push_back(url.path());
            return found;
        }
        void setUserDirectories(const std::string& text) { std::ofstream(home + "/config/user-dirs.dirs") << text; }

        const std::string home = std::getenv("HOME");
        XdgTree tree;
        LinuxStandardDirectories directories { tree.keeper() };
    };

    TEST_F(StandardDirectoriesTest, UserDirectoriesFollowTheUsersSettings)
    {
        EXPECT_THAT(paths(Directory::documentDirectory, Mask::userDomainMask), ElementsAre(home + "/Documents"));
        setUserDirectories("XDG_DESKTOP_DIR=\"$HOME/Schreib tisch\"\nXDG_DOCUMENTS_DIR=\"/srv/documents\"\n"
                           "XDG_DOWNLOAD_DIR=\"$HOME/\"\n");
        EXPECT_THAT(paths(Directory::desktopDirectory, Mask::userDomainMask), ElementsAre(home + "/Schreib tisch"));
        EXPECT_THAT(paths(Directory::documentDirectory, Mask::userDomainMask), ElementsAre("/srv/documents"));
        EXPECT_THAT(paths(Directory::downloadsDirectory, Mask::userDomainMask), IsEmpty());
        EXPECT_THAT(paths(Directory::documentDirectory, Mask::localAndSystemDomainMask), IsEmpty());
        EXPECT_EQ(directories.homeDirectory().path(), home);
    }

    TEST_F(StandardDirectoriesTest, BundlesAreUpToDateWhenAskedFor)
    {
        tree.writeApplication("local", "a.desktop", "A");
        EXPECT_THAT(paths(Directory::applicationDirectory, Mask::localAndSystemDomainMask),
                    ElementsAre(tree.bundlePath("Local/Applications"), tree.bundlePath("System/Applications")));
        EXPECT_THAT(tree.bundles(), ElementsAre("Local/Applications/A.app"));
        tree.writeApplication("user", "b.desktop", "B");
        std::filesystem::create_directory(home + "/Applications");
        EXPECT_THAT(paths(Directory::applicationDirectory, Mask::userDomainMask),
                    ElementsAre(tree.bundlePath("User/Applications"), home + "/Applications"));
        EXPECT_THAT(tree.bundles(), ElementsAre("Local/Applications/A.app", "User/Applications/B.app"));
    }

} // namespace
} // namespace quillbox
