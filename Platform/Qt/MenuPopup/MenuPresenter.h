#pragma once

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

// Shows menus of the model as popups of our own and turns what the person does with them into calls of a
// MenuTracking, which holds the rules. One menu is open at a time; opening another closes the first.
// Owns its popups, one a level; keeps the menu alive while it is open.
class MenuPresenter {
public:
    explicit MenuPresenter(AssistiveTechnology listener = {});
    ~MenuPresenter();
    MenuPresenter(const MenuPresenter&) = delete;
    MenuPresenter& operator=(const MenuPresenter&) = delete;

    // Opens `menu` beside `anchor` (global logical pixels; the icon's rectangle, or an empty rectangle at
    // the pointer), on the side that has room. Where the menu is empty once it was brought up to date,
    // `reserve` (may be null) is opened in its place. False where nothing was opened: both are empty, an
    // alert runs, or the call comes from the very click that has just closed the menu. An open menu takes the
    // pointer, so a second click on the icon closes it first, as a click outside, and the host passes the click
    // on a moment later: a call within kSameClick of such a press, with that press in the anchor (or near an
    // empty one), opens nothing.
    // `owner` is the window of ours that the anchor lies in, null where it lies in a panel; Wayland shows no popup
    // without one.
    bool popUp(std::shared_ptr<NSMenu> menu, QRect anchor, std::shared_ptr<NSMenu> reserve, QWindow* owner = nullptr);
    // For a menu that a key has just opened: highlights the first row, and goes on asking for the keyboard, which
    // whoever was told of that key may hold until it is released. Nothing where no menu is open.
    void beginByKeyboard();
    bool isOpen() const;
    void close();

    static constexpr std::chrono::milliseconds kSameClick { 300 };

    // Called each time the last level has gone off the screen.
    std::function<void()> onClosed;

    // The open levels as text for whoever works on the program: per level a line "level N: x,y WxH", then
    // per visible row "  x,y WxH <title>" with its rectangle on the screen (device pixels), in row order.
    std::string describeOpenLevels() const;

private:
    class Session;
    std::unique_ptr<Session> session_;
};

} // namespace quillbox
