#pragma once

#include "NSImage.h"

#include <QColor>
#include <QPixmap>

namespace quillbox {

// Turns images of the model into pixels, asking an image's source for its content the first time only:
// pixels are kept per source, size and scale, and dropped when the icon theme or the palette changes.
class ImageRenderer {
public:
    // `image` at its own size (points) times `devicePixelRatio`. A template is drawn in `templateColour`.
    // A null pixmap where the image is empty or nothing of it can be found.
    static QPixmap pixmap(const NSImage& image, double devicePixelRatio, const QColor& templateColour);
    static void dropAll();
};

} // namespace quillbox
