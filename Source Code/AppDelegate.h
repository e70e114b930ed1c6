#pragma once

#include "NSApplication.h"

#include <memory>

namespace quillbox {

class StatusMenuItemController;

// Starts Quillbox: loads the configuration and makes the one controller of the status menu.
class AppDelegate : public NSApplicationDelegate {
public:
    void applicationDidFinishLaunching() override;
    // Nothing is saved here: the configuration is written when it is changed. Shows what could not be written.
    void applicationWillTerminate() override;

    // The controller made at launch; null before.
    static const std::shared_ptr<StatusMenuItemController>& statusMenuItemController();
    // Lets go of it, before the desktop that shows its status item ends.
    static void releaseStatusMenuItemController();
};

} // namespace quillbox
