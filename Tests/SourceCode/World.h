#pragma once

#include "FakeUser.h"
#include "HeadlessDesktop.h"
#include "Installed.h"
#include "ManualClock.h"
#include "RecordingWorkspace.h"
#include "TemporaryDirectory.h"

#include "FileManager.h"
#include "MainMenuItem.h"
#include "StatusMenuItemController.h"
#include "UserDefaults.h"

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

    // Makes the controller, as the launch does after loading.
    void launch();
    // A list of `items` as the live one. What is stored is of a later version, so that items which ask for a
    // reload at every opening stay as they are.
    void configure(std::vector<std::shared_ptr<MainMenuItem>> items);
    FakeUser user() { return FakeUser(controller->statusItem()->menu()); }

    // What the top-level menu shows when it is opened, and closed again.
    std::string openedMenu();
    // The rows of one directory as text; the row titles alone.
    std::string rows(const std::string& directory, MenuOptionFlagsSv sv = {}, MenuOptionFlagsDv dv = {});
    std::vector<std::string> titles(const std::string& directory, MenuOptionFlagsSv sv = {});

    // The texts of the error log without marks, heading and place: the messages alone.
    static std::vector<std::string> loggedMessages();

private:
    static void empty();

    const Installed<UserDefaults> installedDefaults_ { defaults };
    const Installed<StandardDirectories> installedDirectories_ { directories };
};

std::shared_ptr<MainMenuItem> pickedItem(const std::string& path, MenuOptionFlagsSv sv = {});

} // namespace quillbox
