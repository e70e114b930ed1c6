#pragma once

#include "Clock.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <functional>
#include <memory>

namespace quillbox {

// The answer to a host that has handed over the right to bring a window to the front. GNOME's shell shows a busy
// pointer from then on until a program uses the right, or for fifteen seconds: but the click may be on a row that
// starts nothing. A refused right ends the busy pointer at once, so the host gets its answer when it is known whether
// the right was used. The status item's presenter keeps one; it is at most one call behind.
class HeldActivationToken {
public:
    // Whether what the click did has used the right.
    std::function<bool()> isTaken;

    // Keeps the answer to `call`; true. A click that is not one on a row follows only once it was answered.
    bool hold(const QDBusMessage& call, const QDBusConnection& connection);
    // A row was clicked, and its action is about to run; the action has ended.
    void clickCame();
    void actionEnded();

private:
    static constexpr std::chrono::milliseconds kUntilClick { 300 };
    // A window of ours that the action has opened comes to the front by then.
    static constexpr std::chrono::milliseconds kUntilWindow { 2000 };

    void answer(bool isUsed);

    struct Held {
        QDBusMessage call;
        QDBusConnection connection;
    };
    std::unique_ptr<Held> held_;
    std::unique_ptr<Clock::Timer> timer_;
};

} // namespace quillbox
