#include "SingleInstance.h"

#include "SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QDBusVirtualObject>
#include <QTimer>

namespace quillbox {

namespace {

    const QString kName = QStringLiteral("org.quillbox.Quillbox");
    const QString kPath = QStringLiteral("/org/quillbox/Quillbox");
    const QString kInterface = QStringLiteral("org.freedesktop.Application");

    const QString kActivationToken = QStringLiteral("activation-token");
    const QString kStartupId = QStringLiteral("desktop-startup-id");

    // In milliseconds. A Quillbox that lists a slow directory answers late; one that hangs never does.
    constexpr int kAnswerTimeout = 10'000;

    const char* const kBusMarks[] = { "DBUS_STARTER_ADDRESS", "DBUS_STARTER_BUS_TYPE" };

    std::string tokenIn(const QVariantMap& platformData)
    {
        const QString token = platformData.value(kActivationToken).toString();
        return (token.isEmpty() ? platformData.value(kStartupId).toString() : token).toStdString();
    }

} // namespace

SingleInstance::StartEnvironment SingleInstance::StartEnvironment::take()
{
    StartEnvironment environment;
    for (const char* name : { "XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID" }) {
        if (environment.activationToken.empty())
            environment.activationToken = qgetenv(name).toStdString();
    }
    for (const char* mark : kBusMarks) {
        environment.isStartedByBus |= qEnvironmentVariableIsSet(mark);
        qunsetenv(mark);
    }
    return environment;
}

// The object at the application's path, with the connection that owns the name.
class SingleInstance::Service final : public QDBusVirtualObject {
public:
    explicit Service(bool isStartedByBus) : isStartingCallDue_(isStartedByBus)
    {
        // The object is registered before the name is requested, since calls may follow at once.
        if (bus_.isConnected())
            bus_.connection().registerVirtualObject(kPath, this);
        bus_.onReturned = [this] { comeBack(); };
    }
    ~Service() override { bus_.connection().unregisterObject(kPath); }

    Outcome claim(const std::string& activationToken, const std::string& action);

    Handlers handlers;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    enum class Taker { us, other, nobody };

    Taker requestName();
    void awaitStartingCall();
    void comeBack();
    QDBusMessage callFirst(const std::string& activationToken, const std::string& action);
    QDBusMessage activate(const QDBusMessage& call, const QVariantMap& platformData);
    QDBusMessage activateAction(const QDBusMessage& call);
    void later(const QVariantMap& platformData, std::function<void()> handler);

    SessionBus bus_;
    // Set until the calls that wait for the name have been delivered.
    bool isStartingCallDue_;
    std::unique_ptr<QDBusPendingCallWatcher> delivered_;
};

SingleInstance::Service::Taker SingleInstance::Service::requestName()
{
    using Interface = QDBusConnectionInterface;
    const QDBusReply<Interface::RegisterServiceReply> reply = bus_.connection().interface()->registerService(
        kName, Interface::DontQueueService, Interface::DontAllowReplacement);
    if (!reply.isValid())
        return Taker::nobody;
    return reply.value() == Interface::ServiceRegistered ? Taker::us : Taker::other;
}

// The bus keeps a call that starts a process until the process takes the name, and delivers it then, before the answer
// to any later question. The variables that the bus sets are no proof of such a call: programs that the bus started,
// terminals among them, pass them on to what they start.
void SingleInstance::Service::awaitStartingCall()
{
    if (!isStartingCallDue_)
        return;
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    const QDBusMessage question =
        QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, QStringLiteral("GetId"));
    delivered_ = std::make_unique<QDBusPendingCallWatcher>(bus_.connection().asyncCall(question));
    QObject::connect(delivered_.get(), &QDBusPendingCallWatcher::finished, this,
                     [this] { isStartingCallDue_ = false; });
}

void SingleInstance::Service::comeBack()
{
    bus_.connection().registerVirtualObject(kPath, this);
    // If another Quillbox has been started in the meantime, it keeps the name, and this one continues without it.
    requestName();
}

QDBusMessage SingleInstance::Service::callFirst(const std::string& activationToken, const std::string& action)
{
    QVariantMap platformData;
    if (!activationToken.empty()) {
        const QString token = QString::fromStdString(activationToken);
        platformData = { { kActivationToken, token }, { kStartupId, token } };
    }
    const QString member = action.empty() ? QStringLiteral("Activate") : QStringLiteral("ActivateAction");
    QDBusMessage call = QDBusMessage::createMethodCall(kName, kPath, kInterface, member);
    if (!action.empty())
        call << QString::fromStdString(action) << QVariantList();
    call << platformData;
    // If the first process ends at this moment, this one takes its place; the bus need not start a third.
    call.setAutoStartService(false);
    return bus_.connection().call(call, QDBus::Block, kAnswerTimeout);
}

SingleInstance::Outcome SingleInstance::Service::claim(const std::string& activationToken, const std::string& action)
{
    if (!bus_.isConnected())
        return Outcome::unguarded;
    // There are at most two attempts, because the process that has the name may end before it is asked.
    for (int attempt = 0; attempt < 2; ++attempt) {
        const Taker taker = requestName();
        if (taker == Taker::us)
            awaitStartingCall();
        if (taker != Taker::other)
            return taker == Taker::us ? Outcome::first : Outcome::unguarded;
        const QDBusMessage answer = callFirst(activationToken, action);
        if (answer.type() == QDBusMessage::ReplyMessage)
            return Outcome::handedOver;
        if (QDBusError(answer).type() != QDBusError::ServiceUnknown)
            return Outcome::notAnswered;
    }
    return Outcome::notAnswered;
}

void SingleInstance::Service::later(const QVariantMap& platformData, std::function<void()> handler)
{
    QTimer::singleShot(0, this, [this, token = tokenIn(platformData), handler = std::move(handler)] {
        if (!token.empty() && handlers.onActivationToken)
            handlers.onActivationToken(token);
        if (handler)
            handler();
    });
}

QDBusMessage SingleInstance::Service::activate(const QDBusMessage& call, const QVariantMap& platformData)
{
    if (!std::exchange(isStartingCallDue_, false))
        later(platformData, [this] {
            if (handlers.onActivate)
                handlers.onActivate();
        });
    return call.createReply();
}

QDBusMessage SingleInstance::Service::activateAction(const QDBusMessage& call)
{
    isStartingCallDue_ = false;
    const QString name = call.arguments().at(0).toString();
    const auto action = handlers.actions.find(name.toStdString());
    if (action == handlers.actions.end())
        return invalidArguments(call, QStringLiteral("Quillbox has no action \"%1\"").arg(name));
    later(qdbus_cast<QVariantMap>(call.arguments().at(2)), action->second);
    return call.createReply();
}

bool SingleInstance::Service::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    const auto activateCall = [this](const QDBusMessage& call) {
        return activate(call, qdbus_cast<QVariantMap>(call.arguments().at(0)));
    };
    // Quillbox opens no documents, so a call to open files also brings it to the front.
    const auto open = [this](const QDBusMessage& call) {
        return activate(call, qdbus_cast<QVariantMap>(call.arguments().at(1)));
    };
    const auto action = [this](const QDBusMessage& call) { return activateAction(call); };
    return answerCall(message, connection, kInterface,
                      { { "Activate", "a{sv}", activateCall },
                        { "Open", "asa{sv}", open },
                        { "ActivateAction", "sava{sv}", action } });
}

QString SingleInstance::Service::introspect(const QString&) const
{
    return QStringLiteral(R"xml(<interface name="org.freedesktop.Application">
  <method name="Activate"><arg name="platform_data" type="a{sv}" direction="in"/></method>
  <method name="Open"><arg name="uris" type="as" direction="in"/><arg name="platform_data" type="a{sv}" direction="in"/></method>
  <method name="ActivateAction"><arg name="action_name" type="s" direction="in"/><arg name="parameter" type="av" direction="in"/><arg name="platform_data" type="a{sv}" direction="in"/></method>
</interface>
)xml");
}

SingleInstance::SingleInstance(StartEnvironment environment)
    : environment_(std::move(environment)),
      service_(std::make_unique<Service>(environment_.isStartedByBus))
{
}

SingleInstance::~SingleInstance() = default;

SingleInstance::Outcome SingleInstance::claim(const std::string& action)
{
    return service_->claim(environment_.activationToken, action);
}

void SingleInstance::setHandlers(Handlers handlers)
{
    service_->handlers = std::move(handlers);
}

} // namespace quillbox
