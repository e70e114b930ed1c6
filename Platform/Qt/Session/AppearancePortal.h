#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QTimer>

#include <functional>
#include <memory>

class QDBusPendingCallWatcher;

namespace quillbox {

// The user's settings for all programs of the desktop, from the desktop portal (org.freedesktop.appearance): light or
// dark, and strong contrast. They are asked for when this is made, when the portal starts, and when the portal says
// that something has changed; nothing waits for the answer.
class AppearancePortal {
public:
    explicit AppearancePortal(QDBusConnection connection);
    ~AppearancePortal();
    AppearancePortal(const AppearancePortal&) = delete;
    AppearancePortal& operator=(const AppearancePortal&) = delete;

    // The numbers are those of the portal.
    enum class Scheme : unsigned { noPreference = 0, dark = 1, light = 2 };
    // No preference until the portal has answered, or if there is no portal.
    Scheme scheme() const { return scheme_; }
    bool wantsHighContrast() const { return wantsHighContrast_; }

    // Called from the event loop when one of the two has changed.
    std::function<void()> onChanged;

private:
    void ask();
    void take(unsigned scheme, unsigned contrast);

    QDBusConnection connection_;
    QDBusServiceWatcher watcher_;
    // The bus library calls slots by their name; this timer provides one.
    QTimer changed_;
    std::unique_ptr<QDBusPendingCallWatcher> askedScheme_;
    std::unique_ptr<QDBusPendingCallWatcher> askedContrast_;
    Scheme scheme_ = Scheme::noPreference;
    bool wantsHighContrast_ = false;
};

} // namespace quillbox
