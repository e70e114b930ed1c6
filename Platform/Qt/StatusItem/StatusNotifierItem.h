#pragma once

#include "MenuDrawing.h"
#include "SessionBus.h"
#include "StatusIcon.h"

#include <QDBusArgument>
#include <QDBusVirtualObject>
#include <QPoint>

namespace quillbox {

// One size of an icon on the bus: ARGB32, not premultiplied, with rows from the top and bytes in network order.
struct NotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};
using NotifierPixmapList = QList<NotifierPixmap>;

struct NotifierToolTip {
    QString iconName;
    NotifierPixmapList icons;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& out, const NotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& out, const NotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierToolTip& toolTip);

// The status item on the session bus, for hosts: org.kde.StatusNotifierItem at /StatusNotifierItem. Clicks are answered
// at once and reported from the event loop, so that no host waits for a menu. StatusNotifierRegistration registers it
// with a watcher.
//
// If the host draws the menu, the item says that it offers no clicks; otherwise some hosts would ask us before they
// open the menu, or wait for a second click. A click that a host reports nevertheless is passed to the handlers, if
// they are set.
class StatusNotifierItem final : public QDBusVirtualObject {
public:
    // `menuPath` is the object that exports a menu on the same connection: the whole menu if the host draws it,
    // otherwise the short one.
    StatusNotifierItem(QDBusConnection connection, StatusIcon icon, QString menuPath, MenuDrawing drawing);
    ~StatusNotifierItem() override;

    // Called on a click with the host's position in device pixels, or (0, 0) from hosts that know none. Without a
    // handler the method is refused as unknown; so is a context menu if the host draws menus.
    std::function<void(QPoint)> onActivate;
    std::function<void(QPoint)> onContextMenu;
    // Called with the message that passes an activation token, just before the click to which it belongs. Returns true
    // if the handler answers the message later.
    std::function<bool(const QDBusMessage&)> onActivationToken;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QVariantMap properties();
    bool answerClicks(const QDBusMessage& message, const QDBusConnection& connection);
    QDBusMessage answerClick(const QDBusMessage& call, const std::function<void(QPoint)>& handler);

    QDBusConnection connection_;
    StatusIcon icon_;
    QString menuPath_;
    MenuDrawing drawing_;
    // Drawn when the first host asks.
    NotifierPixmapList pixmaps_;
};

} // namespace quillbox

Q_DECLARE_METATYPE(quillbox::NotifierPixmap)
Q_DECLARE_METATYPE(quillbox::NotifierToolTip)
