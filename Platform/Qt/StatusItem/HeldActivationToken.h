#pragma once

#include "Clock.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <functional>
#include <memory>

namespace quillbox {

// Holds back the answer to a host that has passed an activation token, the right to bring a window to the front. GNOME
// Shell then shows a busy pointer until a program uses the token, or for fifteen seconds; but the click may be on a row
// that starts nothing. A refused token ends the busy pointer at once, so the host gets its answer when it is known
// whether the token was used. The status item's presenter owns one; it holds at most one answer at a time.
class HeldActivationToken {
public:
    // Returns whether what the click did has used the token.
    std::function<bool()> isTaken;

    // Holds the answer to `call` and returns true. If the click is not on a row, the host sends it only after the
    // answer.
    bool hold(const QDBusMessage& call, const QDBusConnection& connection);
    // clickCame() must be called before the action of a clicked row runs, actionEnded() after it.
    void clickCame();
    void actionEnded();

private:
    static constexpr std::chrono::milliseconds kUntilClick { 300 };
    // A window of ours that the action opens is in front by then.
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
