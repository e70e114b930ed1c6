#include "AppDelegate.h"

#include "Clock.h"
#include "Debug.h"
#include "ManageDefaults.h"
#include "NSAlert.h"
#include "StatusMenuItemController.h"
#include "UserDefaults.h"

#include <chrono>

namespace quillbox {

namespace {

    std::shared_ptr<StatusMenuItemController> theController;

    void showSettingsAlert(const Error& error)
    {
        NSAlert alert;
        alert.setMessageText("There is a problem with the settings of Quillbox");
        alert.setInformativeText(error.description());
        alert.runModal();
    }

    // The alert waits for the end of the event: settings are written while a menu is on its way to open.
    void reportSettingsFailure(const Error& error)
    {
        Debug::addErrorLogEntry("UserDefaults", "synchronize()", __FILE__, __LINE__, false, error.description());
        static std::unique_ptr<Clock::Timer> pending;
        pending = Clock::current().after(std::chrono::milliseconds(0), [error] { showSettingsAlert(error); });
    }

} // namespace

void AppDelegate::applicationDidFinishLaunching()
{
    UserDefaults::standard().setFailureHandler(reportSettingsFailure);
    ManageDefaults::loadAllFromDisk();
    theController = StatusMenuItemController::create();
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
