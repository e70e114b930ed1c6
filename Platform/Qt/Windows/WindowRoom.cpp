#include "WindowRoom.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <cstdlib>

namespace quillbox {

namespace {

    // As high as the title bars of common desktops are.
    constexpr QMargins kUsualFrame(4, 36, 4, 6);

    QMargins frameOf(const QWidget* window)
    {
        const QWindow* handle = window ? window->windowHandle() : nullptr;
        const QMargins told = handle && handle->isVisible() ? handle->frameMargins() : QMargins();
        return told.isNull() ? kUsualFrame : told;
    }

} // namespace

QSize roomForContent(const QWidget* window)
{
    const QScreen* screen = window ? window->screen() : QGuiApplication::primaryScreen();
    return screen->availableGeometry().marginsRemoved(frameOf(window)).size();
}

bool isOtherRoom(QSize room, QSize before, QSize content)
{
    constexpr int kFrame = 50;
    const QSize change = room - before;
    return content.boundedTo(room) != content || std::abs(change.width()) > kFrame
        || std::abs(change.height()) > kFrame;
}

QPoint firstPlace(const QWidget& window, const QWidget* parent)
{
    const QRect screen = (parent ? parent : &window)->screen()->availableGeometry();
    const QMargins frame = frameOf(parent);
    QPoint place = screen.center() - window.rect().center();
    if (parent)
        place = parent->geometry().topLeft() + QPoint((parent->width() - window.width()) / 2, 0);
    // What is placed is the frame. One that is larger than the screen begins at its top left.
    const QSize whole = window.rect().marginsAdded(frame).size();
    return { std::max(screen.left(), std::min(place.x(), screen.right() + 1 - whole.width())),
             std::max(screen.top(), std::min(place.y(), screen.bottom() + 1 - whole.height())) };
}

} // namespace quillbox
