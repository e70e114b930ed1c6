#include "TrayIcon.h"

#include "TrayProtocol.h"

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <optional>

namespace quillbox {

namespace {

    QColor readableOn(const QPixmap& background)
    {
        constexpr int kMiddle = 128;
        const QImage average = background.toImage().scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        return average.isNull()                    ? StatusIcon::neutralColour()
            : qGray(average.pixel(0, 0)) < kMiddle ? QColor(Qt::white)
                                                   : QColor(Qt::black);
    }

} // namespace

// The window in the tray, which sets its size.
class TrayWindow final : public QWidget {
public:
    TrayWindow(const StatusIcon& icon, const TrayProtocol& protocol, xcb_window_t owner)
        : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint),
          icon_(icon),
          protocol_(protocol),
          hasAlpha_(protocol.wantsAlpha(owner)),
          symbolColour_(protocol.symbolColour(owner))
    {
        constexpr int kUsualIcon = 22;
        setAttribute(Qt::WA_QuitOnClose, false);
        setAttribute(Qt::WA_TranslucentBackground, hasAlpha_);
        setWindowTitle(QStringLiteral("Quillbox"));
        setToolTip(windowTitle());
        setMinimumSize(kUsualIcon, kUsualIcon);
        resize(kUsualIcon, kUsualIcon);
    }

    xcb_window_t id() const { return static_cast<xcb_window_t>(winId()); }

    std::function<void(Qt::MouseButton, QRect)> onClick;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        QColor colour = StatusIcon::neutralColour();
        if (!hasAlpha_) {
            const QPixmap background = parentBackground();
            painter.drawPixmap(rect(), background);
            colour = readableOn(background);
        }
        const int side = std::min(width(), height());
        const QPixmap pixmap = icon_.pixmap(side, devicePixelRatioF(), symbolColour_.value_or(colour));
        painter.drawPixmap(QRect((width() - side) / 2, (height() - side) / 2, side, side), pixmap);
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        // The event knows where the window is on the screen; an embedded window itself does not.
        const QPoint corner = (event->globalPosition() - event->position()).toPoint();
        if (onClick && rect().contains(event->position().toPoint()))
            onClick(event->button(), QRect(corner, size()));
    }

private:
    QPixmap parentBackground()
    {
        protocol_.showParentBackground(id());
        return screen()->grabWindow(winId());
    }

    StatusIcon icon_;
    const TrayProtocol& protocol_;
    bool hasAlpha_;
    std::optional<QColor> symbolColour_;
};

std::unique_ptr<TrayIcon> TrayIcon::create(const StatusIcon& icon)
{
    auto protocol = TrayProtocol::create();
    return protocol ? std::unique_ptr<TrayIcon>(new TrayIcon(icon, std::move(protocol))) : nullptr;
}

TrayIcon::TrayIcon(const StatusIcon& icon, std::unique_ptr<TrayProtocol> protocol)
    : icon_(icon),
      protocol_(std::move(protocol)),
      owner_(protocol_->findOwner())
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

TrayIcon::~TrayIcon()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

void TrayIcon::setWanted(bool isWanted)
{
    if (isWanted == isWanted_)
        return;
    isWanted_ = isWanted;
    if (isWanted) {
        dock();
    } else {
        window_.reset();
        isDocked_ = false;
    }
}

std::optional<std::pair<QPoint, QSize>> TrayIcon::place() const
{
    const std::optional<QPoint> corner = isDocked_ ? protocol_->placeOf(window_->id()) : std::nullopt;
    return corner ? std::optional(std::pair(*corner, window_->size())) : std::nullopt;
}

void TrayIcon::dock()
{
    window_.reset();
    isDocked_ = false;
    if (!isWanted_ || !owner_)
        return;
    window_ = std::make_unique<TrayWindow>(icon_, *protocol_, owner_);
    window_->onClick = [this](Qt::MouseButton button, QRect rect) {
        if (onClick)
            onClick(button, rect);
    };
    protocol_->requestDock(owner_, window_->id());
}

void TrayIcon::findOwner()
{
    const xcb_window_t owner = protocol_->findOwner();
    if (owner == owner_)
        return;
    owner_ = owner;
    dock();
    if (onChanged)
        onChanged();
}

// The library must have finished with an event before windows are made or destroyed because of it.
void TrayIcon::later(std::function<void()> action)
{
    QTimer::singleShot(0, &context_, std::move(action));
}

bool TrayIcon::nativeEventFilter(const QByteArray&, void* message, qintptr*)
{
    constexpr quint8 kSentByClient = 0x80;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    switch (event->response_type & ~kSentByClient) {
    case XCB_CLIENT_MESSAGE:
        if (protocol_->isNewTray(*reinterpret_cast<const xcb_client_message_event_t*>(event)))
            later([this] { findOwner(); });
        break;
    case XCB_DESTROY_NOTIFY:
        if (owner_ && reinterpret_cast<const xcb_destroy_notify_event_t*>(event)->window == owner_)
            later([this] { findOwner(); });
        break;
    case XCB_EXPOSE:
        // The background of the parent can be read only now that the window is on the screen.
        if (window_ && reinterpret_cast<const xcb_expose_event_t*>(event)->window == window_->id())
            window_->update();
        break;
    case XCB_REPARENT_NOTIFY: {
        const auto* reparent = reinterpret_cast<const xcb_reparent_notify_event_t*>(event);
        if (!window_ || reparent->window != window_->id())
            break;
        const bool isDocked = reparent->parent != protocol_->root;
        later([this, isDocked, window = reparent->window] {
            if (!window_ || window_->id() != window || isDocked_ == isDocked)
                return;
            isDocked_ = isDocked;
            window_->setVisible(isDocked);
            if (onChanged)
                onChanged();
        });
        break;
    }
    default:
        break;
    }
    return false;
}

} // namespace quillbox
