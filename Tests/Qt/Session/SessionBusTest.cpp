#include "SessionBus.h"

#include "PrivateBus.h"
#include "SingleInstance.h"

#include <gtest/gtest.h>

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>
#include <QTimer>

using namespace quillbox;

namespace {

const QString kName = QStringLiteral("org.quillbox.Quillbox");

TEST(SessionBus, IsConnectedToAgainWhenItComesBack)
{
    PrivateBus daemon;
    SessionBus bus;
    int returns = 0;
    bus.onReturned = [&returns] { ++returns; };
    ASSERT_TRUE(bus.isConnected());
    for (int restart = 1; restart <= 2; ++restart) {
        daemon.stop();
        EXPECT_TRUE(waitUntil([&bus] { return !bus.isConnected(); }));
        // Its directory may be a busy one.
        QTimer others;
        others.callOnTimeout([&, number = 0]() mutable {
            QFile(daemon.directory() + QString::number(++number)).open(QFile::WriteOnly);
        });
        others.start(5);
        EXPECT_TRUE(waitUntil([&] { return QFile::exists(daemon.directory() + "60"); }));
        daemon.start();
        EXPECT_TRUE(waitUntil([&] { return returns == restart; }));
        QFile::remove(daemon.directory() + "60");
        EXPECT_TRUE(bus.isConnected());
        BusClient other;
        const QString ours = bus.connection().baseService();
        EXPECT_TRUE(other.connection().interface()->isServiceRegistered(ours).value());
    }
}

TEST(SessionBus, AnswersUnderItsNameAfterARestart)
{
    PrivateBus daemon;
    SingleInstance first({});
    ASSERT_EQ(first.claim(), SingleInstance::Outcome::first);
    QStringList calls;
    first.setHandlers({ [&calls] { calls.append("activate"); }, {}, {} });
    daemon.stop();
    daemon.start();
    BusClient client;
    EXPECT_TRUE(waitUntil([&client] { return client.connection().interface()->isServiceRegistered(kName).value(); }));
    client.call(kName, "/org/quillbox/Quillbox", "org.freedesktop.Application", "Activate", { QVariantMap() });
    EXPECT_TRUE(waitUntil([&calls] { return !calls.isEmpty(); }));
    EXPECT_EQ(calls, QStringList { "activate" });
}

} // namespace
