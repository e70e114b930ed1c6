#include "AppDelegate.h"

#include "Clock.h"
#include "Debug.h"
#include "ManageDefaults.h"
#include "NSAlert.h"
#include "StatusMenuItemController.h"
#include "UserDefaults.h"

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace quillbox {

namespace {

    std::shared_ptr<StatusMenuItemController> theController;

    // Failures that no alert has shown yet.
    std::vector<Error> untold;
    bool isTelling = false;

    // Shows one alert for everything that has failed. Failures while it is shown go into the next one.
    void tellSettingsFailures()
    {
        if (std::exchange(isTelling, true))
            return;
        while (!untold.empty()) {
            std::string text;
            for (const Error& error : std::exchange(untold, {}))
                text += (text.empty() ? "" : "\n\n") + error.description();
            NSAlert alert;
            alert.setMessageText("There is a problem with the settings of Quillbox");
            alert.setInformativeText(text);
            alert.runModal();
        }
        isTelling = false;
    }

    // The alert waits for the end of the event, because settings may be written while a menu is about to open.
    void reportSettingsFailure(const Error& error)
    {
        Debug::addErrorLogEntry("UserDefaults", "synchronize()", __FILE__, __LINE__, false, error.description());
        if (std::find(untold.begin(), untold.end(), error) == untold.end())
            untold.push_back(error);
        static std::unique_ptr<Clock::Timer> pending;
        pending = Clock::current().after(std::chrono::milliseconds(0), tellSettingsFailures);
    }

} // namespace

void AppDelegate::applicationDidFinishLaunching()
{
    UserDefaults::standard().setFailureHandler(reportSettingsFailure);
    ManageDefaults::loadAllFromDisk();
    theController = StatusMenuItemController::create();
}

void AppDelegate::applicationWillTerminate()
{
    // No further event will show the failures of this one.
    tellSettingsFailures();
}

const std::shared_ptr<StatusMenuItemController>& AppDelegate::statusMenuItemController()
{
    return theController;
}

void AppDelegate::releaseStatusMenuItemController()
{
    theController.reset();
}

} // namespace quillbox
