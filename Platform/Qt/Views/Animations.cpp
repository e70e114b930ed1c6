#include "Animations.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QStyle>
#include <QWidget>

namespace quillbox {

namespace {

    // Asks for GNOME's switch, which the toolkit's styles do not know. Other desktops have theirs in the style.
    void askDesktop(bool& isOn)
    {
        const QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected())
            return;
        QDBusMessage question = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
        question << QStringLiteral("org.gnome.desktop.interface") << QStringLiteral("enable-animations");
        question.setAutoStartService(false);
        auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), qGuiApp);
        QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, &isOn] {
            const QDBusPendingReply<QDBusVariant> reply = *answer;
            answer->deleteLater();
            if (reply.isError())
                return;
            QVariant value = reply.value().variant();
            // The value is wrapped twice.
            if (value.canConvert<QDBusVariant>())
                value = value.value<QDBusVariant>().variant();
            isOn = value.toBool();
        });
    }

} // namespace

std::chrono::milliseconds animationDuration(const QWidget& widget)
{
    static bool isOn = true;
    static const bool isAsked = [] {
        askDesktop(isOn);
        return true;
    }();
    static_cast<void>(isAsked);
    return std::chrono::milliseconds(
        isOn ? widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) : 0);
}

} // namespace quillbox
