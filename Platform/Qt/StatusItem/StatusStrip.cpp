#include "StatusStrip.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QToolButton>

namespace quillbox {

namespace {

    constexpr int kIconSize = 24;
    constexpr int kMargin = 4;

    bool canPlaceWindows()
    {
        return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    }

    Qt::WindowFlags flagsForSession()
    {
        return canPlaceWindows() ? Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
                                 : Qt::WindowFlags(Qt::Window);
    }

} // namespace

StatusStrip::StatusStrip(const StatusIcon& icon)
    : QWidget(nullptr, flagsForSession()),
      icon_(icon),
      button_(new QToolButton(this))
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QStringLiteral("Quillbox"));
    button_->setAccessibleName(windowTitle());
    button_->setToolTip(windowTitle());
    button_->setAutoRaise(true);
    button_->setIconSize({ kIconSize, kIconSize });
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->addWidget(button_);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    drawIcon();

    connect(button_, &QToolButton::clicked, this, [this] {
        if (onClick)
            onClick(Qt::LeftButton, iconRect());
    });
    if (canPlaceWindows()) {
        const QScreen* screen = QGuiApplication::primaryScreen();
        connect(screen, &QScreen::availableGeometryChanged, this, [this] { moveToEdge(); });
        connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, [this](QScreen* primary) {
            if (!primary)
                return;
            connect(primary, &QScreen::availableGeometryChanged, this, [this] { moveToEdge(); });
            moveToEdge();
        });
    }
}

QRect StatusStrip::iconRect() const
{
    return { mapToGlobal(QPoint(0, 0)), size() };
}

void StatusStrip::drawIcon()
{
    const QColor colour = palette().color(QPalette::WindowText);
    button_->setIcon(QIcon(icon_.pixmap(kIconSize, devicePixelRatioF(), colour)));
}

void StatusStrip::moveToEdge()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen || !canPlaceWindows())
        return;
    const QRect room = screen->availableGeometry();
    const int left = isRightToLeft() ? room.left() : room.right() + 1 - width();
    move(left, room.top());
}

void StatusStrip::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    moveToEdge();
}

void StatusStrip::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
    if (onClick)
        onClick(Qt::RightButton, iconRect());
}

void StatusStrip::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        drawIcon();
}

} // namespace quillbox
