#pragma once

#include "MenuDrawing.h"
#include "NSStatusItem.h"

#include <functional>
#include <memory>
#include <string>

namespace quillbox {

class MenuPresenter;

// Keeps the status item's icon on the screen: as a StatusNotifierItem while a watcher runs, else in the
// older tray where the X server has one, else on a strip of our own; and opens the menu by
// MenuPresenter when the icon is clicked, or exports it for hosts that draw it themselves: one of the two at a
// time. Follows hosts as they come and go for as long as it lives.
// Keeps neither the item nor the presenter alive.
class StatusItemPresenter {
public:
    // `shortMenu` is shown by a right click where we draw the menu, and where the item's own menu is empty.
    StatusItemPresenter(NSStatusItem& item, MenuPresenter& menus, std::shared_ptr<NSMenu> shortMenu,
                        MenuDrawing drawing);
    ~StatusItemPresenter();
    StatusItemPresenter(const StatusItemPresenter&) = delete;
    StatusItemPresenter& operator=(const StatusItemPresenter&) = delete;

    // `take` gets the activation token that a host hands over before a click, for what the click starts; `isTaken` says
    // whether something has used it since.
    void setActivationTokenHandlers(std::function<void(const std::string&)> take, std::function<bool()> isTaken);

    // Does what a click on the icon does; for the short menu, which opens where that was opened.
    void openMenu();
    // What a key does that opens the menu: opens it at the icon with its first row highlighted, once there is an icon;
    // leaves an open one as it is. Hosts can't be told to open the menu that they draw: there it opens at the strip.
    void openMenuByKeyboard();
    // The strip that the person has closed comes back; nothing where something else shows the icon.
    void showStripAgain();
    // Hosts may have asked for the menu while the alert did not let it open.
    void alertHasEnded();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quillbox
