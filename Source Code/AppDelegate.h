#pragma once

#include "NSApplication.h"

#include <memory>

namespace quillbox {

class StatusMenuItemController;

// Starts Quillbox: it loads the configuration and makes the controller of the status menu.
class AppDelegate : public NSApplicationDelegate {
public:
    void applicationDidFinishLaunching() override;
    // Shows what could not be written. Nothing is saved here, since the configuration is written whenever it is
    // changed.
    void applicationWillTerminate() override;

    // Returns the controller made at launch, or null before that.
    static const std::shared_ptr<StatusMenuItemController>& statusMenuItemController();
    // Releases the controller. This must happen before the desktop that shows its status item ends.
    static void releaseStatusMenuItemController();
};

} // namespace quillbox
