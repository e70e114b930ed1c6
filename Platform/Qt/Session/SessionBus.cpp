#include "SessionBus.h"

#include <QDBusError>
#include <QDBusVariant>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QUrl>

#include <sys/stat.h>

#include <optional>
#include <utility>

namespace quillbox {

namespace {

    // Milliseconds until a bus that seems to have returned is tried for the first time; each further attempt waits
    // twice as long.
    constexpr int kFirstRetry = 50;
    constexpr int kRetries = 6;

    // Returns an empty text if no bus runs. The library would then start one, but a bus without other programs is
    // useless.
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

    // Returns the parts of an address such as "unix:path=/run/user/1000/bus,guid=...", without its transport.
    QStringList partsOf(const QString& address)
    {
        return address.section(QLatin1Char(';'), 0, 0).section(QLatin1Char(':'), 1).split(QLatin1Char(','));
    }

    // The id is removed because a restarted bus is another server on the same socket.
    QString withoutServerId(const QString& address)
    {
        QStringList parts = partsOf(address);
        parts.removeIf([](const QString& part) { return part.startsWith(QLatin1String("guid=")); });
        return address.isEmpty()
            ? address
            : address.section(QLatin1Char(':'), 0, 0) + QLatin1Char(':') + parts.join(QLatin1Char(','));
    }

    // Returns an empty text if the bus has no socket in a file system.
    QString socketOf(const QString& address)
    {
        const QString key = QStringLiteral("path=");
        for (const QString& part : partsOf(address)) {
            if (part.startsWith(key))
                return QUrl::fromPercentEncoding(part.mid(key.size()).toUtf8());
        }
        return {};
    }

    // Tells a socket from its successor at the same path, which may have the same inode. Nothing is returned if there
    // is no socket.
    std::optional<std::pair<ino_t, qint64>> identityOf(const QString& socket)
    {
        struct stat status { };
        if (stat(QFile::encodeName(socket).constData(), &status) != 0)
            return std::nullopt;
        return std::pair(status.st_ino, qint64 { status.st_ctim.tv_sec } * 1'000'000'000 + status.st_ctim.tv_nsec);
    }

    QString nextConnectionName()
    {
        static int count = 0;
        return QStringLiteral("quillbox-%1").arg(++count);
    }

} // namespace

SessionBus::SessionBus() : name_(nextConnectionName()), connection_(connectTo(addressOfRunningBus(), name_))
{
    lost_.setSingleShot(true);
    retry_.setSingleShot(true);
    QObject::connect(&lost_, &QTimer::timeout, &lost_, [this] { connectAgain(); });
    QObject::connect(&retry_, &QTimer::timeout, &retry_, [this] { connectAgain(); });
    listenForLoss();
}

SessionBus::~SessionBus()
{
    QDBusConnection::disconnectFromBus(name_);
}

void SessionBus::listenForLoss()
{
    if (connection_.isConnected())
        connection_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                            QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), &lost_,
                            SLOT(start()));
}

void SessionBus::connectAgain()
{
    QDBusConnection::disconnectFromBus(name_);
    name_ = nextConnectionName();
    connection_ = connectTo(withoutServerId(addressOfRunningBus()), name_);
    if (!connection_.isConnected()) {
        waitForReturn();
        return;
    }
    socketWatcher_.reset();
    retry_.stop();
    listenForLoss();
    if (onReturned)
        onReturned();
}

void SessionBus::waitForReturn()
{
    // A socket exists before anybody listens on it, so a refused connection is tried again a few times.
    if (retriesLeft_ > 0) {
        retry_.start(kFirstRetry << (kRetries - retriesLeft_));
        --retriesLeft_;
    }
    const QString socket = socketOf(addressOfRunningBus());
    if (socketWatcher_ || socket.isEmpty())
        return;
    socketWatcher_ = std::make_unique<QFileSystemWatcher>(QStringList { QFileInfo(socket).absolutePath() });
    // Other files in the directory may come and go at any time; only a new socket is a reason to try.
    QObject::connect(socketWatcher_.get(), &QFileSystemWatcher::directoryChanged, &retry_,
                     [this, socket, tried = identityOf(socket)]() mutable {
                         const auto now = identityOf(socket);
                         if (std::exchange(tried, now) == now || !now)
                             return;
                         retriesLeft_ = kRetries;
                         retry_.start(kFirstRetry);
                     });
    // The bus may have returned before the directory was watched.
    retriesLeft_ = kRetries;
    retry_.start(kFirstRetry);
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
        if (call.isReplyRequired() && reply.type() != QDBusMessage::InvalidMessage)
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
