#include "ShortcutPortal.h"

#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <QDBusArgument>

using namespace quillbox;

namespace {

const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");

// Answers each request by its signal, a refused shortcut by `answer`.
class FakePortal final : public QDBusVirtualObject {
public:
    explicit FakePortal(unsigned answer) : answer_(answer)
    {
        client_.connection().registerVirtualObject(kPath, this);
        client_.connection().registerService("org.freedesktop.portal.Desktop");
    }

    QStringList calls;

    void press(const QString& name)
    {
        QDBusMessage pressed = QDBusMessage::createSignal(kPath, "org.freedesktop.portal.GlobalShortcuts", "Activated");
        pressed << QVariant::fromValue(QDBusObjectPath(kPath + "/session/ours")) << name << qulonglong { 1 }
                << QVariantMap { { "activation_token", "token" } };
        client_.connection().send(pressed);
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override
    {
        calls.append(call.member() + '(' + call.signature() + ')');
        if (call.member() == "Register")
            return connection.send(call.createErrorReply(QDBusError::UnknownMethod, "not here"));
        const QVariantMap options = qdbus_cast<QVariantMap>(call.arguments().last());
        const QString sender = call.service().mid(1).replace('.', '_');
        const QString request = kPath + "/request/" + sender + '/' + options.value("handle_token").toString();
        QDBusMessage response = QDBusMessage::createSignal(request, "org.freedesktop.portal.Request", "Response");
        const bool isSession = call.member() == "CreateSession";
        response << (isSession ? 0U : answer_) << QVariantMap { { "session_handle", kPath + "/session/ours" } };
        return connection.send(response)
            && connection.send(call.createReply(QVariant::fromValue(QDBusObjectPath(request))));
    }

private:
    BusClient client_;
    unsigned answer_;
};

TEST(ShortcutPortal, AsksForAKeyAndHearsOfIt)
{
    for (const unsigned answer : { 0U, 1U }) {
        PrivateBus bus;
        ShortcutPortal shortcut("org.quillbox.Quillbox", "open-menu", "Open the menu");
        QStringList heard;
        shortcut.onPressed = [&](const std::string& token) { heard.append(QString::fromStdString(token)); };
        shortcut.onRefused = [&] { heard.append("refused"); };
        // The portal starts later than the program.
        FakePortal portal(answer);
        ASSERT_TRUE(waitUntil([&] { return portal.calls.size() == 3; }));
        EXPECT_EQ(portal.calls,
                  (QStringList { "Register(sa{sv})", "CreateSession(a{sv})", "BindShortcuts(oa(sa{sv})sa{sv})" }));
        portal.press("another");
        portal.press("open-menu");
        const QStringList wanted = answer ? QStringList { "refused", "token" } : QStringList { "token" };
        EXPECT_TRUE(waitUntil([&] { return heard == wanted; })) << answer;
    }
}

} // namespace
