#include "RecentUseIndex.h"

#include "Installed.h"
#include "ManageDefaults.h"
#include "World.h"
#include "XdgTree.h"

#include <gtest/gtest.h>

namespace quillbox {
namespace {

    // The menus of recent items over the records of a home of the test's own.
    class RecentItemsMenus : public WorldTest {
    protected:
        RecentItemsMenus()
        {
            tree.writeApplication("system", "Alpha.desktop", "Alpha");
            const double now = world.clock.now().secondsSinceUnixEpoch();
            tree.files().writeFile("user/gnome-shell/application_state",
                                   "<application-state><application id='Alpha.desktop' last-seen='"
                                       + std::to_string(static_cast<long>(now) - 40) + "'/></application-state>");
            const std::string report = tree.files().writeFile("Report");
            const std::string letter = tree.files().writeFile("a letter");
            tree.files().writeFile("user/recently-used.xbel",
                                   "<xbel>" + bookmark(report, 40) + bookmark(letter, 31) + "</xbel>");
            start();
        }
        std::string bookmark(const std::string& path, int secondsAgo) const
        {
            std::string visited = world.clock.now().addingSeconds(-secondsAgo).description().substr(0, 19);
            visited[10] = 'T';
            return "<bookmark href='" + URL::fileURLWithPath(path).absoluteString() + "' visited='" + visited + "Z'/>";
        }
        void start()
        {
            installed.reset();
            index.reset();
            bundles = std::make_unique<ApplicationBundles>(tree.environment, nullptr);
            index = std::make_unique<RecentUseIndex>(*bundles, nullptr);
            installed.emplace(*index);
        }

        XdgTree tree;
        std::unique_ptr<ApplicationBundles> bundles;
        std::unique_ptr<RecentUseIndex> index;
        std::optional<Installed<MetadataIndex>> installed;
    };

    TEST_F(RecentItemsMenus, AfterClearingAndARestartShowLaterUseOnly)
    {
        world.configure({ item(MenuItemType::recentItems, "All"), item(MenuItemType::recentItemsDocs, "Docs") });
        EXPECT_EQ(world.openedSubmenu("All"), "Applications|Alpha|---|Documents|a letter|Report|---|Clear Menu|");
        world.user().open().openSubmenu("All").choose("Clear Menu");
        EXPECT_TRUE(world.openedSubmenu("All").starts_with("Applications|None|---|Documents|None|---|Note that"));
        EXPECT_EQ(world.openedSubmenu("Docs"), "a letter|Report|---|Clear Menu|") << "each menu has its own";

        world.clock.advance(std::chrono::seconds(2));
        index->noteOpened(tree.path("Report"));
        // A copy: the record looks at the bundles anew.
        const std::string application = bundles->bundles().front().path;
        index->noteOpened(application);
        start();
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(world.openedSubmenu("All"), "Applications|Alpha|---|Documents|Report|---|Clear Menu|");
    }

} // namespace
} // namespace quillbox
