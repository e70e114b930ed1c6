#pragma once

#include <QRect>
#include <QSize>
#include <Qt>

namespace quillbox {

// Where menus go on the screen. All rectangles are global logical pixels; `available` is the part of one
// screen that menus may cover. A result lies inside `available`; it is lower than asked for where there is no
// room, and the list is scrolled then.

// Below `anchor` or above it: below where the menu fits there, else above, else where there is more room.
// The menu begins at the anchor's leading edge.
QRect placeBesideAnchor(QSize menu, QRect anchor, QRect available, Qt::LayoutDirection direction);

// Beside the parent's row `row` (a rectangle in the popup `parent`), overlapping the parent by `overlap`;
// on the trailing side where there is room, else on the other. The first row, `firstRowTop` below the menu's
// upper edge, is level with `row`.
QRect placeBesideRow(QSize menu, int firstRowTop, QRect row, QRect parent, QRect available, int overlap,
                     Qt::LayoutDirection direction);

} // namespace quillbox
