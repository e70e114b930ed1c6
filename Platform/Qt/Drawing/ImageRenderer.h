#pragma once

#include "NSImage.h"

#include <QColor>
#include <QPixmap>

namespace quillbox {

// Turns images of the model into pixels. Pixels are kept up to a bound, by the content that is shown, its size and the
// scale. They are dropped when the icon theme or the palette changes.
class ImageRenderer {
public:
    // Returns `image` at its own size (in points) times `devicePixelRatio`. A template is drawn in `templateColour`.
    // The pixmap is null if the image is empty or none of it can be found.
    static QPixmap pixmap(const NSImage& image, double devicePixelRatio, const QColor& templateColour);
    static void dropAll();
};

} // namespace quillbox
