#include "IconPlace.h"

#include "WorkArea.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cstdlib>

namespace quillbox {

namespace {

    // Hosts may report any point of the icon; this is the side of a large one, in logical pixels.
    constexpr int kIconSide = 64;

} // namespace

std::optional<QPoint> toldPoint(QPoint devicePixels)
{
    if (devicePixels.isNull())
        return std::nullopt;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect logical = screen->geometry();
        const double scale = screen->devicePixelRatio();
        if (QRect(logical.topLeft(), logical.size() * scale).contains(devicePixels))
            return logical.topLeft() + ((devicePixels - logical.topLeft()).toPointF() / scale).toPoint();
    }
    return std::nullopt;
}

// An X server knows where the pointer is; other displays know it only while it is over a window of ours.
QPoint pointOfClick(QPoint devicePixels)
{
    const QPoint pointer = QCursor::pos();
    const QPoint told = toldPoint(devicePixels).value_or(pointer);
    const QPoint difference = told - pointer;
    const bool isNear = std::max(std::abs(difference.x()), std::abs(difference.y())) <= kIconSide;
    return isNear || QGuiApplication::platformName() != QLatin1String("xcb") ? told : pointer;
}

QPoint usualPlaceOfIcons()
{
    const QScreen& screen = *QGuiApplication::primaryScreen();
    const QRect whole = screen.geometry();
    const QRect free = workAreaOf(screen);
    const bool isUpright = free.height() == whole.height() && free.width() != whole.width();
    const bool isLow = isUpright || free.bottom() < whole.bottom();
    const bool isOnLeft = isUpright ? free.left() > whole.left() : QGuiApplication::isRightToLeft();
    return { isOnLeft ? free.left() : free.right(), isLow ? free.bottom() : free.top() };
}

} // namespace quillbox
