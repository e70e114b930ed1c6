#pragma once

#include <QPoint>
#include <QSize>

class QWidget;

namespace quillbox {

// Where on its screen a window has room: beside what panels take, with the frame that the window manager puts around
// it. Before a window is on the screen its frame is guessed. Logical pixels.

// The largest content that the window can have; null stands for one that is not made yet.
QSize roomForContent(const QWidget* window);
// Whether a content of that size has to be fitted into its room anew. That its frame is narrower than it was guessed
// moves nothing.
bool isOtherRoom(QSize room, QSize before, QSize content);
// Where the window, whose size is settled, is put when it is first shown: in the middle, or at the top of the window
// that it is a sheet on.
QPoint firstPlace(const QWidget& window, const QWidget* parent);

} // namespace quillbox
