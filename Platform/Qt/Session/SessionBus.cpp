#include "SessionBus.h"

#include <QDBusError>
#include <QDBusVariant>
#include <QFileInfo>

namespace quillbox {

namespace {

    // The library would start a bus of its own where it finds none; one that nobody else is on helps nobody.
    QString addressOfRunningBus()
    {
        QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
        if (!address.isEmpty())
            return address;
        const QString socket = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
        return QFileInfo(socket).isAbsolute() && QFileInfo::exists(socket) ? QStringLiteral("unix:path=") + socket
                                                                           : QString();
    }

    QDBusConnection connectTo(const QString& address, const QString& name)
    {
        return address.isEmpty() ? QDBusConnection(name) : QDBusConnection::connectToBus(address, name);
    }

    QString nextConnectionName()
    {
        static int count = 0;
        return QStringLiteral("quillbox-%1").arg(++count);
    }

} // namespace

SessionBus::SessionBus() : name_(nextConnectionName()), connection_(connectTo(addressOfRunningBus(), name_)) { }

SessionBus::~SessionBus()
{
    QDBusConnection::disconnectFromBus(name_);
}

QDBusMessage invalidArguments(const QDBusMessage& call, const QString& message)
{
    return call.createErrorReply(QDBusError::InvalidArgs, message);
}

bool answerCall(const QDBusMessage& call, const QDBusConnection& connection, const QString& interface,
                std::initializer_list<BusMethod> methods)
{
    if (!call.interface().isEmpty() && call.interface() != interface)
        return false;
    for (const BusMethod& method : methods) {
        if (call.member() != QLatin1String(method.member))
            continue;
        const bool fits = call.signature() == QLatin1String(method.signature);
        const QDBusMessage reply = fits
            ? method.answer(call)
            : invalidArguments(call, QStringLiteral("%1 takes (%2)").arg(call.member(), method.signature));
        if (call.isReplyRequired())
            connection.send(reply);
        return true;
    }
    if (call.interface().isEmpty())
        return false;
    connection.send(call.createErrorReply(QDBusError::UnknownMethod,
                                          QStringLiteral("%1 has no method %2").arg(interface, call.member())));
    return true;
}

bool answerProperties(const QDBusMessage& call, const QDBusConnection& connection, const QString& interface,
                      const std::function<QVariantMap()>& properties)
{
    const auto unknownInterface = [&](const QDBusMessage& message) {
        return message.createErrorReply(
            QDBusError::UnknownInterface,
            QStringLiteral("no interface %1 here").arg(message.arguments().at(0).toString()));
    };
    const auto isOurs = [&](const QDBusMessage& message) {
        const QString asked = message.arguments().at(0).toString();
        return asked.isEmpty() || asked == interface;
    };
    const auto get = [&](const QDBusMessage& message) {
        if (!isOurs(message))
            return unknownInterface(message);
        const QString name = message.arguments().at(1).toString();
        const QVariantMap all = properties();
        const auto found = all.constFind(name);
        if (found == all.constEnd())
            return message.createErrorReply(QDBusError::UnknownProperty, QStringLiteral("no property %1").arg(name));
        return message.createReply(QVariant::fromValue(QDBusVariant(*found)));
    };
    const auto getAll = [&](const QDBusMessage& message) {
        return isOurs(message) ? message.createReply(properties()) : unknownInterface(message);
    };
    const auto set = [](const QDBusMessage& message) {
        return message.createErrorReply(QDBusError::PropertyReadOnly, QStringLiteral("properties can only be read"));
    };
    return answerCall(call, connection, QStringLiteral("org.freedesktop.DBus.Properties"),
                      { { "Get", "ss", get }, { "GetAll", "s", getAll }, { "Set", "ssv", set } });
}

} // namespace quillbox
