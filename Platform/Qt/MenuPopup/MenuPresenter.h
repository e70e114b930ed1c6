#pragma once

#include "FileDrag.h"
#include "MenuAccessible.h"
#include "NSMenu.h"

#include <QPoint>
#include <QRect>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

class QWindow;

namespace quillbox {

// Shows menus of the model as popups of our own, and turns what the user does with them into calls of a MenuTracking,
// which holds the rules. One menu is open at a time; opening another one closes it. It owns its popups and keeps the
// menu alive while it is open.
class MenuPresenter {
public:
    explicit MenuPresenter(AssistiveTechnology listener = {});
    ~MenuPresenter();
    MenuPresenter(const MenuPresenter&) = delete;
    MenuPresenter& operator=(const MenuPresenter&) = delete;

    // Must be called once an icon is on the screen that opens the menu: see MenuWarmUp. Further calls have no effect.
    void warmUp();

    // Opens `menu` beside `anchor`, on the side that has room. The anchor is in global logical pixels: the icon's
    // rectangle, or an empty rectangle at the pointer. If the menu is still empty after it was updated, `reserve`
    // (which may be null) is opened in its place. `owner` is our window that contains the anchor, or null if a panel
    // does; on Wayland no popup is shown without one.
    //
    // Returns false if nothing was opened: because both menus are empty, an alert runs, or the call comes from the
    // click that has just closed the menu. An open menu takes the pointer, so a second click on the icon is first a
    // click outside of the menu, which closes it; the host reports the click a moment later. Therefore a call within
    // kSameClick of such a press opens nothing if the press was in the anchor (or near an empty one).
    bool popUp(std::shared_ptr<NSMenu> menu, QRect anchor, std::shared_ptr<NSMenu> reserve, QWindow* owner = nullptr);
    // Must be called when a key has opened a menu: highlights the first row, and continues to ask for the keyboard,
    // which another program may hold until the key is released. Nothing happens if no menu is open.
    void beginByKeyboard();
    bool isOpen() const;
    void close();

    static constexpr std::chrono::milliseconds kSameClick { 300 };

    // Drags a row's file out of the menu after the present event; a test puts its own in its place.
    std::function<void(const FileDrag&)> runDrag = runFileDrag;

    // Called each time the last level has left the screen.
    std::function<void()> onClosed;

    // Describes the open levels as text, for developers: for each level a line "level N: x,y WxH", then for each
    // visible row in order "  x,y WxH <title>" with its rectangle on the screen (in device pixels).
    std::string describeOpenLevels() const;

private:
    class Session;
    std::unique_ptr<Session> session_;
};

} // namespace quillbox
