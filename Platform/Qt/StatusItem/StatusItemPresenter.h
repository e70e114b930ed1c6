#pragma once

#include "MenuDrawing.h"
#include "NSStatusItem.h"

#include <functional>
#include <memory>
#include <string>

namespace quillbox {

class MenuPresenter;

// Keeps the status item's icon on the screen: as a StatusNotifierItem while a watcher runs, otherwise in the older tray
// if the X server has one, otherwise on a strip of our own. When the icon is clicked, it opens the menu with
// MenuPresenter; for hosts that draw the menu themselves it exports it instead. It follows hosts as they come and go,
// and keeps neither the item nor the menu presenter alive.
class StatusItemPresenter {
public:
    // `shortMenu` is shown on a right click if we draw the menu, and whenever the item's own menu is empty.
    StatusItemPresenter(NSStatusItem& item, MenuPresenter& menus, std::shared_ptr<NSMenu> shortMenu,
                        MenuDrawing drawing);
    ~StatusItemPresenter();
    StatusItemPresenter(const StatusItemPresenter&) = delete;
    StatusItemPresenter& operator=(const StatusItemPresenter&) = delete;

    // `take` gets the activation token that a host passes before a click, for what the click starts. `isTaken` returns
    // whether something has used it since.
    void setActivationTokenHandlers(std::function<void(const std::string&)> take, std::function<bool()> isTaken);

    // Does what a click on the icon does. If the short menu was opened last, it opens the menu in that place.
    void openMenu();
    // Opens the menu for the keyboard: at the icon, as soon as there is one, with the first row highlighted. An open
    // menu stays as it is. A host that draws the menu can't be told to open it; in that case our own menu opens at the
    // strip.
    void openMenuByKeyboard();
    // Shows the strip again that the user has closed. Nothing happens if the icon is shown elsewhere.
    void showStripAgain();
    // Must be called after an alert, because hosts may have asked for the menu while the alert did not let it open.
    void alertHasEnded();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quillbox
