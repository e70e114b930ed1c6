#pragma once

#include <QString>

namespace quillbox {

// Who draws the status item's menu. In a Wayland session a popup without a window of its own can't be placed, not even
// by a program that shows its windows through X, and GNOME opens nothing but menus of its own.
enum class MenuDrawing { byUs, byHost };

// `platform` is the display platform's name, `sessionType` and `desktops` what XDG_SESSION_TYPE and the colon-separated
// list in XDG_CURRENT_DESKTOP say.
MenuDrawing menuDrawing(const QString& platform, const QString& sessionType, const QString& desktops);
MenuDrawing menuDrawingOfSession();

// Whether that desktop's host, once it knows of an item that can be activated, waits at each click whether a second one
// follows. Clicks must seem not to exist there.
bool waitsForSecondClick(const QString& desktops);

} // namespace quillbox
