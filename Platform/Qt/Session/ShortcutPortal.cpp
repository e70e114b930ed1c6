#include "ShortcutPortal.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>

namespace quillbox {

namespace {

    const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
    const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
    const QString kShortcuts = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
    const QString kRegistry = QStringLiteral("org.freedesktop.host.portal.Registry");

    // The parts of the paths that the portal makes for its objects.
    const QString kSessionToken = QStringLiteral("quillbox");
    const QString kCreateToken = QStringLiteral("quillbox_create");
    const QString kBindToken = QStringLiteral("quillbox_bind");

    // In milliseconds; the portal may have to be started first.
    constexpr int kAnswerTimeout = 10'000;

    // The portal's answers to a request.
    constexpr unsigned kGranted = 0;
    constexpr unsigned kRefused = 1;

} // namespace

// A shortcut in the form that the portal takes: its name and its properties.
struct OfferedShortcut {
    QString name;
    QVariantMap properties;
};

static QDBusArgument& operator<<(QDBusArgument& out, const OfferedShortcut& shortcut)
{
    out.beginStructure();
    out << shortcut.name << shortcut.properties;
    out.endStructure();
    return out;
}

static const QDBusArgument& operator>>(const QDBusArgument& in, OfferedShortcut& shortcut)
{
    in.beginStructure();
    in >> shortcut.name >> shortcut.properties;
    in.endStructure();
    return in;
}

} // namespace quillbox

Q_DECLARE_METATYPE(quillbox::OfferedShortcut)

namespace quillbox {

ShortcutPortal::ShortcutPortal(const std::string& identifier, const std::string& name, const std::string& description)
    : identifier_(QString::fromStdString(identifier)),
      name_(QString::fromStdString(name)),
      description_(QString::fromStdString(description))
{
    // A slot is found by the names of its types, and the library has not registered all of its own types yet.
    qRegisterMetaType<QDBusObjectPath>();
    qDBusRegisterMetaType<OfferedShortcut>();
    qDBusRegisterMetaType<QList<OfferedShortcut>>();
    bus_.onReturned = [this] { listen(); };
    listen();
}

ShortcutPortal::~ShortcutPortal() = default;

void ShortcutPortal::listen()
{
    if (!bus_.isConnected())
        return;
    watcher_ =
        std::make_unique<QDBusServiceWatcher>(kService, bus_.connection(), QDBusServiceWatcher::WatchForRegistration);
    connect(watcher_.get(), &QDBusServiceWatcher::serviceRegistered, this, [this] { begin(); });
    // Signals of any sender are accepted: to name one, the library would wait until the bus tells who that is. Only the
    // portal knows the name of the session, which is checked.
    bus_.connection().connect(QString(), kPath, kShortcuts, QStringLiteral("Activated"), this,
                              SLOT(shortcutPressed(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    begin();
}

// Portals that support programs outside of sandboxes must first be told which program this is.
void ShortcutPortal::begin()
{
    session_.clear();
    ask(kRegistry, QStringLiteral("Register"), { identifier_, QVariantMap() });
    const auto registered = [this, asked = call_.get()] {
        if (asked == call_.get() && call_->error().type() != QDBusError::ServiceUnknown)
            createSession();
    };
    // The connection is queued, since the next call replaces this one.
    connect(call_.get(), &QDBusPendingCallWatcher::finished, this, registered, Qt::QueuedConnection);
}

void ShortcutPortal::createSession()
{
    awaitAnswer(kCreateToken, SLOT(sessionAnswered(uint, QVariantMap)));
    const QVariantMap options { { QStringLiteral("handle_token"), kCreateToken },
                                { QStringLiteral("session_handle_token"), kSessionToken } };
    ask(kShortcuts, QStringLiteral("CreateSession"), { options });
}

void ShortcutPortal::sessionAnswered(unsigned response, const QVariantMap& results)
{
    if (response != kGranted)
        return;
    session_ = results.value(QStringLiteral("session_handle")).toString();
    awaitAnswer(kBindToken, SLOT(shortcutAnswered(uint, QVariantMap)));
    const QList<OfferedShortcut> shortcuts { { name_, { { QStringLiteral("description"), description_ } } } };
    const QString noWindow;
    const QVariantMap options { { QStringLiteral("handle_token"), kBindToken } };
    ask(kShortcuts, QStringLiteral("BindShortcuts"),
        { QVariant::fromValue(QDBusObjectPath(session_)), QVariant::fromValue(shortcuts), noWindow, options });
}

void ShortcutPortal::shortcutAnswered(unsigned response, const QVariantMap&)
{
    if (response == kRefused && onRefused)
        onRefused();
}

void ShortcutPortal::shortcutPressed(const QDBusObjectPath& session, const QString& name, qulonglong,
                                     const QVariantMap& options)
{
    if (!session_.isEmpty() && session.path() == session_ && name == name_ && onPressed)
        onPressed(options.value(QStringLiteral("activation_token")).toString().toStdString());
}

// The answer may come before the reply to the call, so the path of its sender is computed here as the portal does.
void ShortcutPortal::awaitAnswer(const QString& token, const char* slot)
{
    QString sender = bus_.connection().baseService().mid(1);
    sender.replace(u'.', u'_');
    bus_.connection().connect(QString(), kPath + QStringLiteral("/request/") + sender + u'/' + token,
                              QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"), this, slot);
}

void ShortcutPortal::ask(const QString& interface, const QString& member, const QVariantList& arguments)
{
    QDBusMessage question = QDBusMessage::createMethodCall(kService, kPath, interface, member);
    question.setArguments(arguments);
    call_ = std::make_unique<QDBusPendingCallWatcher>(bus_.connection().asyncCall(question, kAnswerTimeout));
}

} // namespace quillbox
