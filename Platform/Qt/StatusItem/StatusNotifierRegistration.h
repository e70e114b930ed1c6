#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QTimer>

#include <functional>
#include <memory>

class QDBusPendingCall;
class QDBusPendingCallWatcher;

namespace quillbox {

// Keeps the connection's StatusNotifierItem registered with the session's watcher: now, when a watcher starts later,
// and again when it is replaced. It waits for signals of the bus and asks nothing otherwise.
class StatusNotifierRegistration {
public:
    explicit StatusNotifierRegistration(QDBusConnection connection);
    ~StatusNotifierRegistration();
    StatusNotifierRegistration(const StatusNotifierRegistration&) = delete;
    StatusNotifierRegistration& operator=(const StatusNotifierRegistration&) = delete;

    // Whether the watcher has accepted the item and has a host that shows its items.
    bool isShown() const { return isRegistered_ && hasHost_; }
    // Called from the event loop when isShown() has changed.
    std::function<void()> onShownChanged;

private:
    void registerItem();
    void askForHost();
    void forgetWatcher();
    void setState(bool isRegistered, bool hasHost);
    void follow(std::unique_ptr<QDBusPendingCallWatcher>& slot, const QDBusPendingCall& call,
                std::function<void(QDBusPendingCallWatcher&)> onFinished);

    QDBusConnection connection_;
    QDBusServiceWatcher watcher_;
    // The bus library calls slots by their name; these two timers provide them.
    QTimer hostsChanged_;
    QTimer busClosed_;
    std::unique_ptr<QDBusPendingCallWatcher> registering_;
    std::unique_ptr<QDBusPendingCallWatcher> asking_;
    bool isRegistered_ = false;
    bool hasHost_ = false;
};

} // namespace quillbox
