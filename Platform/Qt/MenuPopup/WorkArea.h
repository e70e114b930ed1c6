#pragma once

#include <QRect>
#include <QSize>

#include <array>
#include <vector>

class QScreen;

namespace quillbox {

// What panels leave free of a screen, so that menus don't lie over them. The toolkit knows that of a single screen;
// of several it gives the whole of each, since window managers announce one rectangle for all of them together.
// There this asks the X server what each panel reserves. Nothing is kept: a menu asks when it opens.

// The free part of the screen in global logical pixels.
QRect workAreaOf(const QScreen& screen);

// The room that a panel reserves, as it says so (_NET_WM_STRUT_PARTIAL), in device pixels: how deep it is from the
// left, right, upper and lower edge of all screens together, then the first and the last pixel along each of them.
using PanelReserve = std::array<quint32, 12>;

// `screen` without what the panels reserve of it, in device pixels; `all` is the size of all screens together.
QRect withoutPanels(QRect screen, QSize all, const std::vector<PanelReserve>& panels);

} // namespace quillbox
