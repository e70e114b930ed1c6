#include "QtApplication.h"

#include "Installed.h"
#include "PrivateBus.h"
#include "QtClock.h"
#include "TemporaryDirectory.h"
#include "UserDefaults.h"

#include <gtest/gtest.h>

#include <QDBusVirtualObject>
#include <QKeyEvent>
#include <QPushButton>

#include <functional>

using namespace quillbox;

namespace {

using Action = std::function<void()>;

void byAKey(const Action& act, const bool&)
{
    QPushButton button;
    QObject::connect(&button, &QPushButton::pressed, act);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QCoreApplication::sendEvent(&button, &press);
}

void byTheClock(const Action& act, const bool& isDone)
{
    QtClock clock;
    const auto timer = clock.after(std::chrono::milliseconds(0), act);
    EXPECT_TRUE(waitUntil([&] { return isDone; }));
}

void byACallThatWasPutOff(const Action& act, const bool& isDone)
{
    QMetaObject::invokeMethod(qApp, act, Qt::QueuedConnection);
    EXPECT_TRUE(waitUntil([&] { return isDone; }));
}

void byACallOverTheBus(const Action& act, const bool&)
{
    struct Object final : QDBusVirtualObject {
        explicit Object(Action action) : act(std::move(action)) { }
        QString introspect(const QString&) const override { return {}; }
        bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
        {
            act();
            return connection.send(message.createReply());
        }
        Action act;
    };
    const PrivateBus bus;
    BusClient host;
    BusClient program;
    Object object(act);
    ASSERT_TRUE(program.connection().registerVirtualObject(QStringLiteral("/object"), &object));
    host.call(program.connection().baseService(), QStringLiteral("/object"), QStringLiteral("an.Interface"),
              QStringLiteral("Act"));
    program.connection().unregisterObject(QStringLiteral("/object"));
}

struct Entry {
    const char* name;
    void (*enter)(const Action& act, const bool& isDone);
};

class EventEntries : public testing::TestWithParam<Entry> { };

TEST_P(EventEntries, WriteWhatTheyChangedWhenTheyEnd)
{
    const TemporaryDirectory files;
    UserDefaults defaults(files.path("defaults.plist"));
    const Installed<UserDefaults> installed(defaults);
    bool isDone = false;
    const auto act = [&] {
        defaults.set(true, "changed");
        EXPECT_FALSE(UserDefaults(defaults.path()).boolean("changed"));
        isDone = true;
    };
    GetParam().enter(act, isDone);
    EXPECT_TRUE(isDone);
    EXPECT_TRUE(UserDefaults(defaults.path()).boolean("changed"));
}

INSTANTIATE_TEST_SUITE_P(QtApplication, EventEntries,
                         testing::Values(Entry { "AKey", byAKey }, Entry { "TheClock", byTheClock },
                                         Entry { "ACallThatWasPutOff", byACallThatWasPutOff },
                                         Entry { "ACallOverTheBus", byACallOverTheBus }),
                         [](const auto& tested) { return std::string(tested.param.name); });

} // namespace
