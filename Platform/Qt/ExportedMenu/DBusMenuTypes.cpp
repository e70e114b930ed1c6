#include "DBusMenuTypes.h"

#include <QDBusMetaType>

namespace quillbox {

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuLayout& layout)
{
    out.beginStructure();
    out << layout.id << layout.properties;
    out.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const DBusMenuLayout& child : layout.children)
        out << QDBusVariant(QVariant::fromValue(child));
    out.endArray();
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuLayout& layout)
{
    in.beginStructure();
    in >> layout.id >> layout.properties;
    layout.children.clear();
    in.beginArray();
    while (!in.atEnd()) {
        QDBusVariant child;
        in >> child;
        layout.children.append(qdbus_cast<DBusMenuLayout>(child.variant()));
    }
    in.endArray();
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuProperties& item)
{
    out.beginStructure();
    out << item.id << item.properties;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuProperties& item)
{
    in.beginStructure();
    in >> item.id >> item.properties;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuRemoved& item)
{
    out.beginStructure();
    out << item.id << item.names;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuRemoved& item)
{
    in.beginStructure();
    in >> item.id >> item.names;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuEvent& event)
{
    out.beginStructure();
    out << event.id << event.name << event.data << event.timestamp;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuEvent& event)
{
    in.beginStructure();
    in >> event.id >> event.name >> event.data >> event.timestamp;
    in.endStructure();
    return in;
}

void registerDBusMenuTypes()
{
    qDBusRegisterMetaType<DBusMenuLayout>();
    qDBusRegisterMetaType<DBusMenuProperties>();
    qDBusRegisterMetaType<DBusMenuPropertiesList>();
    qDBusRegisterMetaType<DBusMenuRemoved>();
    qDBusRegisterMetaType<DBusMenuRemovedList>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<DBusMenuEventList>();
    qDBusRegisterMetaType<QList<int>>();
}

} // namespace quillbox
