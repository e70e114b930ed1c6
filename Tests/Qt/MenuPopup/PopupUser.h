#pragma once

#include "MenuPopup.h"

#include <string>
#include <vector>

namespace quillbox {

// Uses popups of a menu on the screen as a person would: by events sent to the popup that the toolkit would
// send them to.
class PopupUser {
public:
    // The popups on the screen, the top level first.
    static std::vector<MenuPopup*> popups();
    // The row of that title in any open level; fails the test where it is not in sight. Global.
    static QRect rectOf(const std::string& title);
    // The highlighted titles from the top down, "/" between them, "-" for none.
    static std::string selected();

    static void moveTo(QPoint position, Qt::MouseButtons buttons = Qt::NoButton)
    {
        send(QEvent::MouseMove, position, Qt::NoButton, buttons);
    }
    static void moveTo(const std::string& title) { moveTo(rectOf(title).center()); }
    static void press(QPoint position, Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonPress, position, button, button);
    }
    static void release(QPoint position, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {})
    {
        send(QEvent::MouseButtonRelease, position, button, Qt::NoButton, modifiers);
    }
    static void click(QPoint position, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {});
    static void click(const std::string& title) { click(rectOf(title).center()); }
    static void wheel(QPoint position, int notches);
    static void key(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = {});
    static void type(const QString& text);

private:
    static void send(QEvent::Type type, QPoint position, Qt::MouseButton button, Qt::MouseButtons buttons,
                     Qt::KeyboardModifiers modifiers = {});
};

} // namespace quillbox
