#pragma once

#include <vector>

class QWidget;

namespace quillbox {

// The order in which Tab and assistive technologies go through a window: line by line as people read, with the contents
// of a widget before what follows the widget.

// Sorts widgets with the same parent.
void sortAsRead(std::vector<QWidget*>& widgets);

// Returns the widgets that take the keyboard focus by Tab, in that order.
std::vector<QWidget*> keyWidgets(const QWidget& window);
// Returns the widget that gets the focus after `from`, or before it if `forward` is false, wrapping around at the ends.
// Returns null if there is none.
QWidget* nextKeyWidget(const QWidget& window, const QWidget* from, bool forward);

} // namespace quillbox
