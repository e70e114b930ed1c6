#pragma once

#include "NSImage.h"

#include <QColor>
#include <QPixmap>
#include <QString>

namespace quillbox {

// The status item's image in the forms that hosts want: a name in the icon theme, so that the host draws it in its own
// colours and sizes, and pixels in case the host can't.
class StatusIcon {
public:
    // `image` is drawn whenever pixels are asked for.
    explicit StatusIcon(NSImage image);

    // The name in the icon theme; empty if no theme here has the icon, since a host would not find it either.
    const QString& themeName() const { return themeName_; }
    // A directory that a host has to search in addition to its own; empty if the icon is installed.
    const QString& themePath() const { return themePath_; }

    // Returns a square of `size` logical pixels.
    QPixmap pixmap(int size, double devicePixelRatio, const QColor& templateColour) const;

    // The colour for panels whose colours are unknown. Its contrast is 3.8:1 to a usual light panel (#f6f5f4) and to a
    // usual dark one (#202020); no colour has more to both.
    static QColor neutralColour() { return { 123, 123, 123 }; }

private:
    NSImage image_;
    QString themeName_;
    QString themePath_;
};

} // namespace quillbox
