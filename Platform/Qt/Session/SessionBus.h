#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariant>

#include <functional>
#include <initializer_list>

namespace quillbox {

// A connection of its own to the session bus, closed when it goes. Each of our objects on the bus has one:
// whoever watches for its unique name then sees it leave. Never starts a bus where there is none.
class SessionBus {
public:
    SessionBus();
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    // False without a session bus; nothing else may be asked then.
    bool isConnected() const { return connection_.isConnected(); }
    QDBusConnection& connection() { return connection_; }

private:
    QString name_;
    QDBusConnection connection_;
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
