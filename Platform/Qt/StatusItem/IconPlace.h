#pragma once

#include <QPoint>

#include <optional>

namespace quillbox {

// Where on the screen the icon is, as far as hosts tell: in logical pixels, of all screens together.

// From a host's device pixels to logical ones; a screen's origin is the same in both. None where there is no screen
// there, and at (0, 0), which comes from hosts that don't say where the click was.
std::optional<QPoint> toldPoint(QPoint devicePixels);

// Where the icon was clicked, by what the host says of it: some panels tell of another place than that.
QPoint pointOfClick(QPoint devicePixels);

// A guess for an icon that was never clicked: status bars are mostly at that end of the panel at which lines of text
// end, and at the lower end of an upright panel.
QPoint usualPlaceOfIcons();

} // namespace quillbox
