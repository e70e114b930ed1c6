#pragma once

#include "SessionBus.h"

#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <string>

class QDBusPendingCallWatcher;

namespace quillbox {

// One key for one action, from anywhere in the session, which the desktop portal gives
// (org.freedesktop.portal.GlobalShortcuts). The desktop asks the user for the key and shows it in its settings. The
// portal is asked when this is made and when the portal starts; nothing waits for an answer. Without such a portal this
// does nothing, and users bind a key to the program's command line. It has its own connection, since the portal
// distinguishes programs by theirs.
class ShortcutPortal final : public QObject {
    Q_OBJECT

public:
    // `identifier` names the program's desktop entry, `name` the shortcut; the user reads `description`.
    ShortcutPortal(const std::string& identifier, const std::string& name, const std::string& description);
    ~ShortcutPortal() override;

    // Called from the event loop when the key was pressed, with an activation token or an empty text.
    std::function<void(const std::string& activationToken)> onPressed;
    // Called from the event loop when the user wants no key for the action.
    std::function<void()> onRefused;

private slots:
    // The bus library calls these by their names.
    void sessionAnswered(unsigned response, const QVariantMap& results);
    void shortcutAnswered(unsigned response, const QVariantMap& results);
    void shortcutPressed(const QDBusObjectPath& session, const QString& name, qulonglong time,
                         const QVariantMap& options);

private:
    void listen();
    void begin();
    void createSession();
    void awaitAnswer(const QString& token, const char* slot);
    void ask(const QString& interface, const QString& member, const QVariantList& arguments);

    QString identifier_;
    QString name_;
    QString description_;
    SessionBus bus_;
    std::unique_ptr<QDBusServiceWatcher> watcher_;
    std::unique_ptr<QDBusPendingCallWatcher> call_;
    // The path of the portal's session; empty until the portal has made one.
    QString session_;
};

} // namespace quillbox
