#include "PrivateBus.h"

#include "Check.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QFile>
#include <QTimer>

namespace quillbox {

namespace {

    constexpr int kDeadline = 20'000;
    const QString kBus = QStringLiteral("org.freedesktop.DBus");
    const QString kWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    int clientCount = 0;
    const QString kWatcherPath = QStringLiteral("/StatusNotifierWatcher");

} // namespace

bool waitUntil(const std::function<bool()>& isDone)
{
    bool isLate = false;
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, [&isLate] { isLate = true; });
    deadline.start(kDeadline);
    while (!isDone() && !isLate)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    return isDone();
}

PrivateBus::PrivateBus()
{
    const QString configuration = directory_.filePath(QStringLiteral("bus.conf"));
    QFile file(configuration);
    QB_CHECK(file.open(QFile::WriteOnly));
    file.write("<busconfig><type>session</type><listen>unix:path=" + directory_.filePath("bus").toUtf8()
               + "</listen><servicedir>" + directory_.path().toUtf8()
               + "</servicedir><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                 "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    file.close();
    start();
}

void PrivateBus::start()
{
    const QString configuration = directory_.filePath(QStringLiteral("bus.conf"));
    daemon_.start(QStringLiteral("dbus-daemon"),
                  { QStringLiteral("--config-file=") + configuration, QStringLiteral("--nofork"),
                    QStringLiteral("--print-address") });
    QByteArray address;
    while (!address.endsWith('\n') && daemon_.waitForReadyRead(kDeadline))
        address += daemon_.readAllStandardOutput();
    QB_CHECK(address.endsWith('\n'));
    // A restarted bus is another server: the session's programs go on with the address that they were given.
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.trimmed());
}

void PrivateBus::offer(const QString& name)
{
    QFile file(directory_.filePath(name + QStringLiteral(".service")));
    QB_CHECK(file.open(QFile::WriteOnly));
    file.write("[D-BUS Service]\nName=" + name.toUtf8() + "\nExec=/bin/true\n");
    file.close();
    BusClient().call(kBus, QStringLiteral("/org/freedesktop/DBus"), kBus, QStringLiteral("ReloadConfig"));
}

PrivateBus::~PrivateBus()
{
    stop();
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

void PrivateBus::stop()
{
    daemon_.kill();
    daemon_.waitForFinished();
}

BusClient::BusClient()
    : name_(QStringLiteral("test-client-%1").arg(++clientCount)),
      connection_(QDBusConnection::connectToBus(
          qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS").section(QStringLiteral(",guid="), 0, 0), name_))
{
    QB_CHECK(connection_.isConnected());
}

BusClient::~BusClient()
{
    QDBusConnection::disconnectFromBus(name_);
}

QDBusPendingCall BusClient::begin(const QString& service, const QString& path, const QString& interface,
                                  const QString& member, const QVariantList& arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, member);
    message.setArguments(arguments);
    return connection_.asyncCall(message);
}

void BusClient::emitSignal(const QString& path, const QString& interface, const QString& name,
                           const QVariantList& arguments)
{
    QDBusMessage message = QDBusMessage::createSignal(path, interface, name);
    message.setArguments(arguments);
    connection_.send(message);
}

QDBusMessage BusClient::call(const QString& service, const QString& path, const QString& interface,
                             const QString& member, const QVariantList& arguments)
{
    const QDBusPendingCallWatcher pending(begin(service, path, interface, member, arguments));
    waitUntil([&pending] { return pending.isFinished(); });
    return pending.reply();
}

FakeStatusBar::FakeStatusBar(bool hasHost) : hasHost_(hasHost)
{
    client_.connection().registerVirtualObject(kWatcherPath, this);
    QB_CHECK(client_.connection().registerService(kWatcher));
}

FakeStatusBar::~FakeStatusBar()
{
    client_.connection().unregisterService(kWatcher);
}

void FakeStatusBar::setHasHost(bool hasHost)
{
    hasHost_ = hasHost;
    client_.emitSignal(kWatcherPath, kWatcher,
                       hasHost ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered");
}

bool FakeStatusBar::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    if (message.member() == QLatin1String("RegisterStatusNotifierItem")) {
        registeredItems.append(message.arguments().at(0).toString());
        return connection.send(message.createReply());
    }
    return message.member() == QLatin1String("Get")
        && connection.send(message.createReply(QVariant::fromValue(QDBusVariant(hasHost_))));
}

} // namespace quillbox
