#pragma once

#include "NSImage.h"

#include <QColor>
#include <QPixmap>
#include <QString>

namespace quillbox {

// The status item's picture in the forms that hosts want it: a name of the icon theme, so that the host
// draws it in its own colours and sizes, and pixels as the reserve.
class StatusIcon {
public:
    // `image` is drawn wherever pixels are asked for.
    explicit StatusIcon(NSImage image);

    // The theme name, empty where no theme here has the icon: a host can't find it then either.
    const QString& themeName() const { return themeName_; }
    // The directory a host has to search besides its own; empty where the icon is installed.
    const QString& themePath() const { return themePath_; }

    // A square of `size` logical pixels.
    QPixmap pixmap(int size, double devicePixelRatio, const QColor& templateColour) const;

    // The colour for panels whose own is unknown. It stands out by 3.8:1 from a usual light one (#f6f5f4) and from a
    // usual dark one (#202020), and no colour stands out more from both.
    static QColor neutralColour() { return { 123, 123, 123 }; }

private:
    NSImage image_;
    QString themeName_;
    QString themePath_;
};

} // namespace quillbox
