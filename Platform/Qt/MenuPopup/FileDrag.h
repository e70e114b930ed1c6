#pragma once

#include <QPixmap>
#include <QPoint>
#include <QPointer>
#include <QWidget>

#include <string>

namespace quillbox {

// A row of the menu that is dragged out of it, as a file for another program.
struct FileDrag {
    // As the file system's bytes, in the form in which paths leave the program.
    std::string path;
    QPixmap picture;
    // The pointer's place in the picture.
    QPoint hotSpot;
    // On Wayland a drag can begin only in a window that is on the screen: the popup, which is hidden when it has begun.
    // Null on other displays.
    QPointer<QWidget> origin;
};

// Begins the drag when the present event has ended; it may be handled by popups that are gone by then. The other
// program may copy the file or link to it. Other events are handled during the drag.
void runFileDrag(const FileDrag& drag);

} // namespace quillbox
