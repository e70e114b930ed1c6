#include "ShortMenu.h"

#include "AppDelegate.h"
#include "Debug.h"
#include "NSAlert.h"
#include "NSApplication.h"
#include "StatusMenuItemController.h"

#include <utility>

namespace quillbox {

ShortMenu::ShortMenu(std::function<void()> openMenu, LoginItem loginItem)
    : openMenu_(std::move(openMenu)),
      loginItem_(std::move(loginItem))
{
}

std::shared_ptr<NSMenu> ShortMenu::menu(const std::shared_ptr<ShortMenu>& target)
{
    static const Selector open = makeSelector<&ShortMenu::openTheMenu>("openTheMenuWithSender:");
    static const Selector preferences = makeSelector<&ShortMenu::openThePreferences>("openThePreferencesWithSender:");
    static const Selector login = makeSelector<&ShortMenu::toggleStartAtLogin>("toggleStartAtLoginWithSender:");
    static const Selector quit = makeSelector<&ShortMenu::quitTheApplication>("quitTheApplicationWithSender:");
    auto result = std::make_shared<NSMenu>("Quillbox");
    result->setDelegate(target);
    const auto add = [&](const char* title, const Selector& action) {
        auto item = std::make_shared<NSMenuItem>(title, &action);
        item->setTarget(target);
        result->addItem(item);
        return item;
    };
    add("Open", open);
    add("Preferences...", preferences);
    target->startAtLogin_ = add("Start at Login", login);
    result->addItem(NSMenuItem::separatorItem());
    add("Quit", quit);
    return result;
}

void ShortMenu::menuNeedsUpdate(NSMenu&)
{
    if (const auto item = startAtLogin_.lock())
        item->setState(startsAtLogin() ? NSControlStateValue::on : NSControlStateValue::off);
}

bool ShortMenu::startsAtLogin() const
{
    const Result<bool> isOn = loginItem_.isOn();
    if (!isOn)
        Debug::addErrorLogEntry("ShortMenu", "startsAtLogin()", __FILE__, __LINE__, false, isOn.error().description());
    return isOn && *isOn;
}

void ShortMenu::openTheMenu(NSObject*)
{
    openMenu_();
}

void ShortMenu::openThePreferences(NSObject* sender)
{
    if (const auto& controller = AppDelegate::statusMenuItemController())
        controller->openAppPreferencesWindow(sender);
}

// Turns over what the person saw.
void ShortMenu::toggleStartAtLogin(NSObject*)
{
    const auto item = startAtLogin_.lock();
    const bool wasOn = item && item->state() == NSControlStateValue::on;
    const Result<void> done = loginItem_.setOn(!wasOn);
    if (done)
        return;
    NSAlert alert;
    alert.setMessageText(wasOn ? "Quillbox still starts at login" : "Quillbox doesn't start at login");
    alert.setInformativeText(done.error().description());
    alert.runModal();
}

void ShortMenu::quitTheApplication(NSObject* sender)
{
    NSApplication::shared().terminate(sender);
}

} // namespace quillbox
