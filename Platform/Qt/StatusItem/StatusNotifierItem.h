#pragma once

#include "MenuDrawing.h"
#include "SessionBus.h"
#include "StatusIcon.h"

#include <QDBusArgument>
#include <QDBusVirtualObject>
#include <QPoint>

namespace quillbox {

// One size of an icon on the bus: ARGB32, not premultiplied, rows from the top, bytes in network order.
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

// The status item as hosts see it on the session bus: org.kde.StatusNotifierItem at /StatusNotifierItem.
// Clicks are answered at once and reported from the event loop, so that no host waits for a menu.
// Registering it with a watcher is StatusNotifierRegistration's work.
//
// Where the host draws the menu, clicks are said not to exist: that is what makes hosts open the menu that would ask us
// first, or would wait for a second click. Hosts that tell of a click all the same are heard where someone listens.
class StatusNotifierItem final : public QDBusVirtualObject {
public:
    // `menuPath` is the object that exports a menu on the same connection: the whole one where the host
    // draws it, else the short one.
    StatusNotifierItem(QDBusConnection connection, StatusIcon icon, QString menuPath, MenuDrawing drawing);
    ~StatusNotifierItem() override;

    // A click, with the host's position in device pixels; (0, 0) from hosts that know none. Without a handler the
    // method is refused as one that is not there; so is a context menu where the host draws menus.
    std::function<void(QPoint)> onActivate;
    std::function<void(QPoint)> onContextMenu;
    // The right to bring a window to the front, the call's only argument, handed over just before the click it belongs
    // to. True where the call is answered later, by whoever took it.
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
