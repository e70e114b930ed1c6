#pragma once

#include <vector>

class QWidget;

namespace quillbox {

// In which order Tab, and an assistive technology, goes through a window: as people read, line by line, what is inside
// a widget before what comes after it.

// Widgets that lie beside one another in one.
void sortAsRead(std::vector<QWidget*>& widgets);

// The widgets that take the keyboard by Tab, in that order.
std::vector<QWidget*> keyWidgets(const QWidget& window);
// The widget that takes the keyboard after `from` (before it, where `forward` is false), around the
// ends. Null where none does.
QWidget* nextKeyWidget(const QWidget& window, const QWidget* from, bool forward);

} // namespace quillbox
