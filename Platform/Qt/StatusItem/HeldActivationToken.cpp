#include "HeldActivationToken.h"

#include <QDBusError>
#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace quillbox {

bool HeldActivationToken::hold(const QDBusMessage& call, const QDBusConnection& connection)
{
    answer(true);
    call.setDelayedReply(true);
    held_ = std::make_unique<Held>(Held { call, connection });
    timer_ = Clock::current().after(kUntilClick, [this] { answer(true); });
    return true;
}

void HeldActivationToken::clickCame()
{
    // The action may wait for the user, for example with an alert.
    if (held_)
        timer_ = Clock::current().after(kUntilWindow, [this] { answer(!isTaken || isTaken()); });
}

void HeldActivationToken::actionEnded()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const bool isTakenNow = !isTaken || isTaken();
    const bool mayBeTaken =
        std::any_of(windows.begin(), windows.end(), [](const QWindow* window) { return window->isVisible(); });
    if (isTakenNow || !mayBeTaken)
        answer(isTakenNow);
}

void HeldActivationToken::answer(bool isUsed)
{
    timer_.reset();
    if (const auto held = std::exchange(held_, nullptr)) {
        held->connection.send(
            isUsed ? held->call.createReply()
                   : held->call.createErrorReply(QDBusError::Failed, QStringLiteral("the click has started nothing")));
    }
}

} // namespace quillbox
