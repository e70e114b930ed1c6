#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QVariantMap>

namespace quillbox {

// The types that com.canonical.dbusmenu sends and takes, with their D-Bus signatures.

// A row and the rows below it: (ia{sv}av).
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayout> children;
};

// The properties of a row without its children: (ia{sv}).
struct DBusMenuProperties {
    int id = 0;
    QVariantMap properties;
};
using DBusMenuPropertiesList = QList<DBusMenuProperties>;

// The names of properties that a row no longer has: (ias).
struct DBusMenuRemoved {
    int id = 0;
    QStringList names;
};
using DBusMenuRemovedList = QList<DBusMenuRemoved>;

// An event on a row, as a host reports it: (isvu).
struct DBusMenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};
using DBusMenuEventList = QList<DBusMenuEvent>;

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuProperties& item);
QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuRemoved& item);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuRemoved& item);
QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuEvent& event);

// Must be called before any of these types is sent or received.
void registerDBusMenuTypes();

} // namespace quillbox

Q_DECLARE_METATYPE(quillbox::DBusMenuLayout)
Q_DECLARE_METATYPE(quillbox::DBusMenuProperties)
Q_DECLARE_METATYPE(quillbox::DBusMenuRemoved)
Q_DECLARE_METATYPE(quillbox::DBusMenuEvent)
