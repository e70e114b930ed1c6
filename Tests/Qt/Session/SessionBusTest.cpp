#include "SessionBus.h"

#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <QDBusConnectionInterface>
#include <QFile>
#include <QTimer>

using namespace quillbox;

namespace {

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

} // namespace
