#pragma once

#include <QRect>
#include <QSize>
#include <Qt>

namespace quillbox {

// Where menus are placed on the screen. All rectangles are in global logical pixels; `available` is the part of one
// screen that menus may cover. A result is inside `available`. If there is not enough room, it is lower than asked for,
// and the list has to be scrolled.

// Returns a place below `anchor` if the menu fits there, otherwise above if it fits there, otherwise on the side with
// more room. The menu begins at the leading edge of the anchor.
QRect placeBesideAnchor(QSize menu, QRect anchor, QRect available, Qt::LayoutDirection direction);

// Returns a place beside the row `row` (a rectangle within the popup `parent`), overlapping the parent by `overlap`. It
// is on the trailing side if there is room, otherwise on the other one. The menu's first row, `firstRowTop` below its
// upper edge, is level with `row`.
QRect placeBesideRow(QSize menu, int firstRowTop, QRect row, QRect parent, QRect available, int overlap,
                     Qt::LayoutDirection direction);

} // namespace quillbox
