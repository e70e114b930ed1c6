#pragma once

#include "NSMenu.h"
#include "NSObject.h"
#include "Result.h"

#include <functional>
#include <memory>

namespace quillbox {

// Whether the desktop starts Quillbox when the person logs in. Asked each time, since the desktop's settings govern it
// too.
struct LoginItem {
    std::function<Result<bool>()> isOn;
    std::function<Result<void>(bool)> setOn;
};

// What a right click on the icon offers, and what stands in for an empty menu. It is the target of its rows and brings
// their state up to date before they are shown; whoever shows the menu keeps it alive.
class ShortMenu final : public NSObject, public NSMenuDelegate {
public:
    ShortMenu(std::function<void()> openMenu, LoginItem loginItem);

    // A menu whose rows `target` serves.
    static std::shared_ptr<NSMenu> menu(const std::shared_ptr<ShortMenu>& target);

    void menuNeedsUpdate(NSMenu& menu) override;
    void menuWillOpen(NSMenu&) override { }
    void menuDidClose(NSMenu&) override { }

private:
    void openTheMenu(NSObject* sender);
    void openThePreferences(NSObject* sender);
    void toggleStartAtLogin(NSObject* sender);
    void quitTheApplication(NSObject* sender);
    bool startsAtLogin() const;

    std::function<void()> openMenu_;
    LoginItem loginItem_;
    std::weak_ptr<NSMenuItem> startAtLogin_;
};

} // namespace quillbox
