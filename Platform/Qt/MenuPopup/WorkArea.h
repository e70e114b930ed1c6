#pragma once

#include <QRect>
#include <QSize>

#include <array>
#include <vector>

class QScreen;

namespace quillbox {

// The part of a screen that panels leave free, so that menus don't cover them. The toolkit knows it only for a single
// screen. For several screens it gives each as a whole, because window managers announce one rectangle for all of them
// together; in that case the X server is asked what each panel reserves. Nothing is cached: a menu asks when it opens.

// Returns the free part of the screen in global logical pixels.
QRect workAreaOf(const QScreen& screen);

// The room that a panel reserves, from its property _NET_WM_STRUT_PARTIAL in device pixels: its depth from the left,
// right, upper and lower edge of all screens together, then the first and the last pixel along each of these edges.
using PanelReserve = std::array<quint32, 12>;

// Returns `screen` without what the panels reserve of it, in device pixels. `all` is the size of all screens together.
QRect withoutPanels(QRect screen, QSize all, const std::vector<PanelReserve>& panels);

} // namespace quillbox
