#include "StatusNotifierRegistration.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace quillbox {

namespace {

    const QString kService = QStringLiteral("org.kde.StatusNotifierWatcher");
    const QString kPath = QStringLiteral("/StatusNotifierWatcher");
    const QString kInterface = QStringLiteral("org.kde.StatusNotifierWatcher");

    QDBusMessage callToWatcher(const QString& interface, const QString& method, const QVariantList& arguments)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, interface, method);
        call.setArguments(arguments);
        // If no watcher runs, none should be started: that would bring no panel.
        call.setAutoStartService(false);
        return call;
    }

} // namespace

StatusNotifierRegistration::StatusNotifierRegistration(QDBusConnection connection)
    : connection_(std::move(connection)),
      watcher_(kService, connection_, QDBusServiceWatcher::WatchForOwnerChange)
{
    QObject::connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, &watcher_,
                     [this](const QString&, const QString&, const QString& newOwner) {
                         forgetWatcher();
                         if (!newOwner.isEmpty())
                             registerItem();
                     });
    for (QTimer* timer : { &hostsChanged_, &busClosed_ }) {
        timer->setSingleShot(true);
        timer->setInterval(0);
    }
    QObject::connect(&hostsChanged_, &QTimer::timeout, &hostsChanged_, [this] { askForHost(); });
    QObject::connect(&busClosed_, &QTimer::timeout, &busClosed_, [this] { forgetWatcher(); });
    for (const char* signal : { "StatusNotifierHostRegistered", "StatusNotifierHostUnregistered" })
        connection_.connect(kService, kPath, kInterface, QLatin1String(signal), &hostsChanged_, SLOT(start()));
    connection_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), &busClosed_,
                        SLOT(start()));
    registerItem();
}

StatusNotifierRegistration::~StatusNotifierRegistration() = default;

void StatusNotifierRegistration::follow(std::unique_ptr<QDBusPendingCallWatcher>& slot, const QDBusPendingCall& call,
                                        std::function<void(QDBusPendingCallWatcher&)> onFinished)
{
    // The answer to an earlier call is dropped, because its watcher may be gone.
    slot = std::make_unique<QDBusPendingCallWatcher>(call);
    QObject::connect(
        slot.get(), &QDBusPendingCallWatcher::finished, slot.get(),
        [onFinished = std::move(onFinished)](QDBusPendingCallWatcher* finished) { onFinished(*finished); });
}

void StatusNotifierRegistration::registerItem()
{
    // The unique name is used because it needs no permission to own a name, which sandboxes refuse.
    const QDBusMessage call =
        callToWatcher(kInterface, QStringLiteral("RegisterStatusNotifierItem"), { connection_.baseService() });
    follow(registering_, connection_.asyncCall(call),
           [this](QDBusPendingCallWatcher& finished) { setState(!finished.isError(), hasHost_); });
    askForHost();
}

void StatusNotifierRegistration::askForHost()
{
    const QDBusMessage call = callToWatcher(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                                            { kInterface, QStringLiteral("IsStatusNotifierHostRegistered") });
    follow(asking_, connection_.asyncCall(call), [this](QDBusPendingCallWatcher& finished) {
        const QDBusPendingReply<QDBusVariant> reply = finished;
        setState(isRegistered_, reply.isValid() && reply.value().variant().toBool());
    });
}

void StatusNotifierRegistration::forgetWatcher()
{
    registering_.reset();
    asking_.reset();
    setState(false, false);
}

void StatusNotifierRegistration::setState(bool isRegistered, bool hasHost)
{
    const bool wasShown = isShown();
    isRegistered_ = isRegistered;
    hasHost_ = hasHost;
    if (isShown() != wasShown && onShownChanged)
        onShownChanged();
}

} // namespace quillbox
