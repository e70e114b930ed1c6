#include "StatusStrip.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QTimer>
#include <QToolButton>

#include <utility>

namespace quillbox {

namespace {

    constexpr int kIconSize = 24;
    constexpr int kMargin = 4;
    // Room for a title bar with a name and a button, which the toolkit may draw itself, in logical pixels.
    constexpr int kLeastWidthBelowTitle = 200;

    bool canPlaceWindows()
    {
        return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    }

    Qt::WindowFlags flagsForSession()
    {
        return canPlaceWindows()
            ? Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
            : Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;
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
    if (!canPlaceWindows()) {
        button_->setText(QStringLiteral("Open Menu"));
        button_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button_->setMinimumWidth(kLeastWidthBelowTitle);
        button_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }
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

void StatusStrip::whenDrawn(std::function<void(QRect)> action)
{
    whenDrawn_ = std::move(action);
    update();
}

void StatusStrip::paintEvent(QPaintEvent* event)
{
    QWidget::paintEvent(event);
    if (whenDrawn_)
        QTimer::singleShot(0, this, [this, action = std::exchange(whenDrawn_, nullptr)] { action(iconRect()); });
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
