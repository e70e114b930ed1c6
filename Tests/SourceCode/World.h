#pragma once

#include "FakeUser.h"
#include "HeadlessDesktop.h"
#include "Installed.h"
#include "ManualClock.h"
#include "RecordingWorkspace.h"
#include "TemporaryDirectory.h"

#include "FileManager.h"
#include "MainMenuItem.h"
#include "MainMenuItemSaver.h"
#include "StatusMenuItemController.h"
#include "UserDefaults.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace quillbox {

// Standard directories that a test names itself.
class NamedDirectories final : public StandardDirectories {
public:
    std::vector<URL> urls(SearchPathDirectory directory, SearchPathDomainMask domains) override;
    URL homeDirectory() override { return URL::fileURLWithPath(home); }

    // The paths of each directory in each single domain.
    std::map<std::pair<SearchPathDirectory, SearchPathDomainMask>, std::vector<std::string>> paths;
    std::string home = "/nowhere";
};

// Everything the application's code needs around it, in a directory of the test's own: settings, a desktop
// without a display, a workspace that records, a clock that stands still. The process-wide lists are
// emptied before and after.
class World {
public:
    World();
    ~World();

    TemporaryDirectory files;
    ManualClock clock;
    HeadlessDesktop desktop;
    RecordingWorkspace workspace;
    NamedDirectories directories;
    UserDefaults defaults { files.path("settings/defaults.plist") };
    std::shared_ptr<StatusMenuItemController> controller;

    // Makes the controller, where there is none yet; `start` does so as the program does, from what is stored.
    void launch();
    void start();
    // A list of `items` as the live one. What is stored is of a later version, so that items which ask for a
    // reload at every opening stay as they are.
    void configure(MainMenuItem::List items);
    // What is stored, on the disk.
    void store(const std::vector<MainMenuItemSaver>& records);
    std::vector<MainMenuItemSaver> storedRecords() const;

    FakeUser user() { return FakeUser(controller->statusItem()->menu()); }
    // What the top-level menu shows when it is opened, and closed again.
    std::string openedMenu();
    // The titles of one submenu of it.
    std::string openedSubmenu(std::string_view title);
    // Each title followed by "|", a separator as "---".
    static std::string joinedTitles(const ItemList& rows);

    // The rows of one directory, as text, and their titles alone. Relative names lie in `files`.
    ItemList items(const std::string& directory, MenuOptionFlagsSv sv = {}, MenuOptionFlagsDv dv = {});
    std::string rows(const std::string& directory);
    std::vector<std::string> titles(const std::string& directory, MenuOptionFlagsSv sv = {}, MenuOptionFlagsDv dv = {});

    // The texts of the error log without marks, heading and place: the messages alone.
    static std::vector<std::string> loggedMessages();

private:
    static void empty();

    const Installed<UserDefaults> installedDefaults_ { defaults };
    const Installed<StandardDirectories> installedDirectories_ { directories };
};

// A test with a world of its own.
class WorldTest : public testing::Test {
protected:
    World world;
};

std::shared_ptr<MainMenuItem> item(MenuItemType type, const std::optional<std::string>& title = {},
                                   MenuOptionFlagsSv sv = {});
std::shared_ptr<MainMenuItem> pickedItem(const std::string& path);

} // namespace quillbox
