#pragma once

#include "MenuLayout.h"

#include <QRect>

class QPainter;
class QWidget;

namespace quillbox {

// Paints what shows that a popup's list is longer than its area `rows`: arrows above and below, each `scrollerHeight`
// high, where there are more rows, and a mark at the side for the visible part.
void paintScrollMarks(QPainter& painter, const QWidget& popup, const QRect& rows, int scrollerHeight,
                      const MenuLayout& layout);

} // namespace quillbox
