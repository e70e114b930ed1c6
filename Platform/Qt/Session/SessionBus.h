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

// A connection of its own to the session bus, closed when it goes. Each of our objects on the bus has one:
// whoever watches for its unique name then sees it leave. Never starts a bus where there is none. When the bus goes
// and comes back, as on its restart, it is connected to again; until then nothing is asked and no timer runs. Where
// there was no bus in the beginning, none is waited for.
class SessionBus {
public:
    SessionBus();
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    // False without a session bus; nothing else may be asked then.
    bool isConnected() const { return connection_.isConnected(); }
    // Another one after each return of the bus: whoever keeps a copy has to take a new one then.
    QDBusConnection& connection() { return connection_; }

    // Called from the event loop when the bus has come back. It knows nothing of us: objects, names and signals are to
    // be registered again.
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
    // Of the directory in which the bus has its socket; null while the bus is there.
    std::unique_ptr<QFileSystemWatcher> socketWatcher_;
};

// A method of one of our objects: its name, the signature of its arguments and what answers it.
struct BusMethod {
    const char* member;
    const char* signature;
    std::function<QDBusMessage(const QDBusMessage& call)> answer;
};

// Answers `call` by the method of that name, where it is for `interface` (or for none, which the bus
// allows). Wrong arguments and unknown methods get an error. False where the call is for something else.
bool answerCall(const QDBusMessage& call, const QDBusConnection& connection, const QString& interface,
                std::initializer_list<BusMethod> methods);

// Answers Get, GetAll and Set of the standard property interface for `interface`, whose properties can be
// read only. `properties` is asked once a call. False where `call` is none of these.
bool answerProperties(const QDBusMessage& call, const QDBusConnection& connection, const QString& interface,
                      const std::function<QVariantMap()>& properties);

QDBusMessage invalidArguments(const QDBusMessage& call, const QString& message);

} // namespace quillbox
