#pragma once

#include <QPoint>

#include <optional>

namespace quillbox {

// Where the icon is on the screen, as far as hosts tell. Results are in logical pixels, of all screens together.

// Converts a host's device pixels to logical pixels; the origin of a screen is the same in both. Nothing is returned if
// there is no screen at that point, and for (0, 0), which hosts send if they don't know where the click was.
std::optional<QPoint> toldPoint(QPoint devicePixels);

// Returns where the icon was clicked. `devicePixels` is what the host says, but some panels report another place.
QPoint pointOfClick(QPoint devicePixels);

// Guesses the place of an icon that was never clicked: status bars are mostly at the end of the panel at which lines of
// text end, and at the lower end of a vertical panel.
QPoint usualPlaceOfIcons();

} // namespace quillbox
