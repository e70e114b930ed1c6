#pragma once

#include "AlertPresenter.h"
#include "Desktop.h"
#include "DesktopAppearance.h"
#include "MenuPresenter.h"
#include "QtWindowDisplay.h"

#include <functional>
#include <memory>
#include <string>

class QApplication;

namespace quillbox {

class StatusItemPresenter;

// The real display, through Qt: the event loop, alerts, and the status item with its menu. It is made once, in main(),
// and the QApplication must outlive it.
class QtDesktop final : public Desktop {
public:
    explicit QtDesktop(QApplication& application);
    ~QtDesktop() override;

    // The menu for a right click on the icon. It is also shown if the icon's own menu is empty.
    void setShortMenu(std::shared_ptr<NSMenu> menu) { shortMenu_ = std::move(menu); }

    // `take` gets the activation token (the right to take the focus) that a host passes with a click. `isTaken` returns
    // whether something other than a window of this program has been started with it since.
    void setActivationTokenHandlers(std::function<void(const std::string&)> take, std::function<bool()> isTaken);
    // The next window that is brought to the front uses up the token.
    static void setActivationToken(const std::string& token);

    // Does what a click on the icon does.
    void openMenu();
    // Opens the menu at its icon for the keyboard, as soon as the icon is on the screen.
    void openMenuByKeyboard();
    // The user has started the program once more. If its icon on the screen was closed, it is shown again.
    void startedAgain();

    const MenuPresenter& menuPresenter() const { return menuPresenter_; }

    void showStatusItem(NSStatusItem& item) override;
    void hideStatusItem(NSStatusItem& item) override;
    void runModal(const NSAlert& alert) override;
    NSRect naturalFrame(const NSAlert& alert) override;
    WindowDisplay& windows() override { return windows_; }
    void copyText(const std::string& text) override;
    void activate() override;
    int run() override;
    void stop() override;

private:
    QApplication& application_;
    DesktopAppearance appearance_;
    MenuPresenter menuPresenter_;
    AlertPresenter alertPresenter_;
    QtWindowDisplay windows_;
    std::shared_ptr<NSMenu> shortMenu_;
    std::function<void(const std::string&)> takeActivationToken_;
    std::function<bool()> isActivationTokenTaken_;
    std::unique_ptr<StatusItemPresenter> statusItem_;
    bool isStopped_ = false;
};

} // namespace quillbox
