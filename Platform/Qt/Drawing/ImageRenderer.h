#pragma once

#include "NSImage.h"

#include <QColor>
#include <QPixmap>

namespace quillbox {

// Turns images of the model into pixels. Sources that were painted lately are not asked again what they show. Pixels
// are kept by what is shown, whichever source said so, with its size and scale, up to a bound; they are dropped when
// the icon theme or the palette changes.
class ImageRenderer {
public:
    // `image` at its own size (points) times `devicePixelRatio`. A template is drawn in `templateColour`.
    // A null pixmap where the image is empty or nothing of it can be found.
    static QPixmap pixmap(const NSImage& image, double devicePixelRatio, const QColor& templateColour);
    static void dropAll();
};

} // namespace quillbox
