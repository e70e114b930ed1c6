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

// One key for one action, from anywhere in the session, as the desktop portal gives it
// (org.freedesktop.portal.GlobalShortcuts). The desktop asks the person for the key and shows it in its settings. Asks
// when it is made and when the portal starts, never waits for an answer, and does nothing where there is no such
// portal: keys are bound to the program's command line there. Has a connection of its own, since the portal tells
// programs apart by theirs.
class ShortcutPortal final : public QObject {
    Q_OBJECT

public:
    // `identifier` names the program's desktop entry, `name` the shortcut; `description` is what the person reads.
    ShortcutPortal(std::string identifier, std::string name, std::string description);
    ~ShortcutPortal() override;

    // Called from the event loop when the key was pressed, with the right to take the focus, or an empty text.
    std::function<void(const std::string& activationToken)> onPressed;
    // Called from the event loop when the person wants no key for it.
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
    // Empty until the portal has made one.
    QString session_;
};

} // namespace quillbox
