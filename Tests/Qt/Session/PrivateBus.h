#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTemporaryDir>

#include <functional>

namespace quillbox {

// Runs the event loop until `isDone`; false where that takes longer than any sound test does.
bool waitUntil(const std::function<bool()>& isDone);

// A session bus of a test's own, with nobody on it, that is the session's bus for as long as it lives.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();

    // Lets a call to `name` wait on the bus until someone takes it, as if a program were being started for it.
    void offer(const QString& name);
    // Ends the bus daemon, as at the end of a session.
    void stop();
    // Starts one in its place, at the same address.
    void start();
    // Where its socket lies, with a slash at its end.
    QString directory() const { return directory_.path() + '/'; }

private:
    QTemporaryDir directory_;
    QProcess daemon_;
};

// Some other program on the bus.
class BusClient {
public:
    BusClient();
    ~BusClient();

    QDBusConnection& connection() { return connection_; }
    // For a QDBusPendingCallWatcher: the call alone does not wake the event loop when its answer comes.
    QDBusPendingCall begin(const QString& service, const QString& path, const QString& interface, const QString& member,
                           const QVariantList& arguments = {});
    void emitSignal(const QString& path, const QString& interface, const QString& name,
                    const QVariantList& arguments = {});
    // Calls and handles events until the answer has come.
    QDBusMessage call(const QString& service, const QString& path, const QString& interface, const QString& member,
                      const QVariantList& arguments = {});

private:
    QString name_;
    QDBusConnection connection_;
};

// A panel's side of the status bar: the watcher, and whether a host shows what is registered.
class FakeStatusBar final : public QDBusVirtualObject {
public:
    explicit FakeStatusBar(bool hasHost = true);
    ~FakeStatusBar() override;

    // Tells of the change as a panel does that starts or stops showing items.
    void setHasHost(bool hasHost);

    QStringList registeredItems;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    BusClient client_;
    bool hasHost_;
};

} // namespace quillbox
