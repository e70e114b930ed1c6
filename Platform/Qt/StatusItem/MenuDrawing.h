#pragma once

#include <QString>

namespace quillbox {

// Who draws the status item's menu. The host does in a Wayland session, where a popup without a parent window can't be
// placed, even by a program that shows its windows through X; and on GNOME, whose shell opens only menus of its own.
enum class MenuDrawing { byUs, byHost };

// `platform` is the name of the toolkit's display platform. `sessionType` and `desktops` are the values of
// XDG_SESSION_TYPE and of XDG_CURRENT_DESKTOP, which is a colon-separated list.
MenuDrawing menuDrawing(const QString& platform, const QString& sessionType, const QString& desktops);
MenuDrawing menuDrawingOfSession();

// Whether the desktop's host opens the menu on a click, at once, only if the item can't be activated: GNOME's shell
// would wait for a second click, and Plasma opens the menu after an error. There the item must offer no activation.
bool opensMenuUnlessActivated(const QString& desktops);

} // namespace quillbox
