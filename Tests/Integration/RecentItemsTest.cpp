#include "RecentUseIndex.h"

#include "Installed.h"
#include "ManageDefaults.h"
#include "World.h"
#include "XdgTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillbox {
namespace {

    using Type = MenuItemType;

    // Remembers what was looked for.
    class WatchingFileManager final : public FileManager {
    public:
        Result<FileKind> kind(const std::string& path) override
        {
            lookedFor.emplace_back(path::lastPathComponent(path));
            return FileManager::kind(path);
        }
        std::vector<std::string> lookedFor;

    private:
        const Installed<FileManager> installed_ { *this };
    };

    // The menus of recent items over the records of a home of the test's own.
    class RecentItemsMenus : public testing::Test {
    protected:
        RecentItemsMenus()
        {
            for (const char* title : { "Alpha", "Beta", "Gamma" })
                tree.writeApplication("system", std::string(title) + ".desktop", title);
            tree.files().writeFile("user/gnome-shell/application_state",
                                   "<application-state>" + seen("Alpha", 40) + seen("Beta", 20) + seen("Gamma", 30)
                                       + seen("Gone", 5) + "</application-state>");
            tree.files().writeFile("user/recently-used.xbel",
                                   "<xbel>" + bookmark("Report 10", 20) + bookmark("Report 9", 40)
                                       + bookmark("a letter", 31) + bookmark("odd.app", 25)
                                       + bookmarkOf(tree.files().makeLink("shortcut", tree.path()) + "/a letter", 45)
                                       + "<bookmark href='file:///gone' visited='" + iso(10)
                                       + "'/><bookmark href='sftp://host/x' visited='" + iso(9)
                                       + "'/><bookmark href='file://" + tree.files().makeDirectory("folder")
                                       + "' visited='" + iso(8) + "'/></xbel>");
            start();
        }

        void start()
        {
            installed.reset();
            index.reset();
            bundles = std::make_unique<ApplicationBundles>(tree.environment, nullptr);
            index = std::make_unique<RecentUseIndex>(*bundles, nullptr);
            installed.emplace(*index);
        }
        std::string iso(int secondsAgo) const
        {
            std::string text = world.clock.now().addingSeconds(-secondsAgo).description().substr(0, 19);
            text[10] = 'T';
            return text + "Z";
        }
        std::string seen(const std::string& title, int secondsAgo) const
        {
            const double when = world.clock.now().addingSeconds(-secondsAgo).secondsSinceUnixEpoch();
            return "<application id='" + title + ".desktop' last-seen='" + std::to_string(static_cast<long>(when))
                + "'/>";
        }
        std::string bookmark(const std::string& name, int secondsAgo)
        {
            return bookmarkOf(tree.files().writeFile(name), secondsAgo);
        }
        std::string bookmarkOf(const std::string& path, int secondsAgo) const
        {
            return "<bookmark href='" + URL::fileURLWithPath(path).absoluteString() + "' visited='" + iso(secondsAgo)
                + "'/>";
        }
        void configure(std::int64_t limit, MenuOptionFlagsSv flags = {})
        {
            std::vector<std::shared_ptr<MainMenuItem>> items;
            for (const auto& [type, title] : { std::pair(Type::recentItems, "All"),
                                               { Type::recentItemsApps, "Apps" },
                                               { Type::recentItemsDocs, "Docs" } }) {
                items.push_back(std::make_shared<MainMenuItem>(type, title, std::nullopt, std::nullopt, flags));
                items.back()->maxNumberOfRecentItems = limit;
            }
            world.configure(std::move(items));
        }
        std::string shown(std::string_view title)
        {
            FakeUser person = world.user();
            person.open().openSubmenu(title);
            std::string text;
            for (const auto& row : person.tracking().menu(1)->itemArray())
                text += (row->isSeparatorItem() ? "---" : row->attributedTitle() ? "(note)" : row->title()) + "|";
            person.close();
            return text;
        }

        World world;
        XdgTree tree;
        std::unique_ptr<ApplicationBundles> bundles;
        std::unique_ptr<RecentUseIndex> index;
        std::optional<Installed<MetadataIndex>> installed;
    };

    TEST_F(RecentItemsMenus, ListWhatTheRecordsTell)
    {
        configure(10, menuOptionFlagsSv::sortByDate);
        EXPECT_EQ(shown("All"),
                  "Applications|Beta|Gamma|Alpha|---|Documents|Report 10|odd.app|a letter|Report 9|---|Clear Menu|");
    }

    TEST_F(RecentItemsMenus, LookOnlyForWhatCouldBeListed)
    {
        configure(2);
        WatchingFileManager files;
        shown("Docs");
        EXPECT_THAT(files.lookedFor, testing::Not(testing::Contains("Report 9")));
        EXPECT_THAT(files.lookedFor, testing::Contains("Report 10"));
    }

    TEST_F(RecentItemsMenus, AfterClearingAndARestartShowLaterUseOnly)
    {
        configure(10);
        world.user().open().openSubmenu("All").choose("Clear Menu");
        EXPECT_EQ(shown("All"), "Applications|None|---|Documents|None|---|(note)|");
        EXPECT_EQ(shown("Docs"), "a letter|odd.app|Report 9|Report 10|---|Clear Menu|") << "each menu has its own";

        world.clock.advance(std::chrono::seconds(2));
        index->noteOpened(tree.path("Report 9"));
        // A copy: the record looks at the bundles anew.
        const std::string application = bundles->bundles().front().path;
        index->noteOpened(application);
        start();
        MainMenuItem::actualMenuItems().clear();
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(shown("All"), "Applications|Alpha|---|Documents|Report 9|---|Clear Menu|");
    }

} // namespace
} // namespace quillbox
