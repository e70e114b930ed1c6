#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFileSystemWatcher>
#include <QString>
#include <QTimer>
#include <QVariant>

#include <functional>
#include <initializer_list>
#include <memory>

namespace quillbox {

// A separate connection to the session bus, closed with this object. Each of our objects on the bus has one, so that
// whoever watches its unique name sees it leave. No bus is started if there is none. If the bus disappears and returns,
// as when it is restarted, the connection is made again; until then nothing is asked and no timer runs. If there was no
// bus in the beginning, none is waited for.
class SessionBus {
public:
    SessionBus();
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    // Returns false without a session bus; nothing else may be called then.
    bool isConnected() const { return connection_.isConnected(); }
    // The connection is replaced each time the bus returns; copies must be replaced too.
    QDBusConnection& connection() { return connection_; }

    // Called from the event loop when the bus has returned. The new bus knows nothing of us, so objects, names and
    // signals must be registered again.
    std::function<void()> onReturned;

private:
    void listenForLoss();
    void connectAgain();
    void waitForReturn();

    QString name_;
    QDBusConnection connection_;
    // The bus library calls slots by their name, and a timer has one.
    QTimer lost_;
    QTimer retry_;
    int retriesLeft_ = 0;
    // Watches the directory in which the bus has its socket; null while the bus is there.
    std::unique_ptr<QFileSystemWatcher> socketWatcher_;
};

// A method of one of our objects: its name, the signature of its arguments, and the function that answers it.
struct BusMethod {
    const char* member;
    const char* signature;
    std::function<QDBusMessage(const QDBusMessage& call)> answer;
};

// Answers `call` with the method of that name, if the call is for `interface` (or for none, which the bus allows).
// Wrong arguments and unknown methods get an error. Returns false if the call is for another interface.
bool answerCall(const QDBusMessage& call, const QDBusConnection& connection, const QString& interface,
                std::initializer_list<BusMethod> methods);

// Answers Get, GetAll and Set of the standard property interface for `interface`, whose properties are read-only.
// `properties` is called once for each call. Returns false if `call` is none of these.
bool answerProperties(const QDBusMessage& call, const QDBusConnection& connection, const QString& interface,
                      const std::function<QVariantMap()>& properties);

QDBusMessage invalidArguments(const QDBusMessage& call, const QString& message);

} // namespace quillbox
