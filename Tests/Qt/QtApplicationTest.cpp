#include "QtApplication.h"

#include "Installed.h"
#include "PrivateBus.h"
#include "QtClock.h"
#include "TemporaryDirectory.h"
#include "UserDefaults.h"

#include <gtest/gtest.h>

#include <QDBusVirtualObject>
#include <QKeyEvent>
#include <QWidget>

#include <functional>

using namespace quillbox;

namespace {

using Action = std::function<void()>;

void byAKey(const Action& act)
{
    struct Control final : QWidget {
        explicit Control(Action action) : act(std::move(action)) { }
        void keyPressEvent(QKeyEvent*) override { act(); }
        Action act;
    } control(act);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QCoreApplication::sendEvent(&control, &press);
}

void byTheClock(const Action& act)
{
    QtClock clock;
    bool isDone = false;
    const auto timer = clock.after(std::chrono::milliseconds(0), [&] {
        act();
        isDone = true;
    });
    EXPECT_TRUE(waitUntil([&] { return isDone; }));
}

void byACallThatWasPutOff(const Action& act)
{
    bool isDone = false;
    const auto perform = [&] {
        act();
        isDone = true;
    };
    QMetaObject::invokeMethod(qApp, perform, Qt::QueuedConnection);
    EXPECT_TRUE(waitUntil([&] { return isDone; }));
}

void byACallOverTheBus(const Action& act)
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
    void (*enter)(const Action&);
};

class EventEntries : public testing::TestWithParam<Entry> { };

TEST_P(EventEntries, WriteWhatTheyChangedWhenTheyEnd)
{
    const TemporaryDirectory files;
    UserDefaults defaults(files.path("defaults.plist"));
    const Installed<UserDefaults> installed(defaults);
    bool wasWrittenInside = true;
    GetParam().enter([&] {
        defaults.set(true, "changed");
        wasWrittenInside = UserDefaults(defaults.path()).boolean("changed");
    });
    EXPECT_FALSE(wasWrittenInside);
    EXPECT_TRUE(UserDefaults(defaults.path()).boolean("changed"));
}

INSTANTIATE_TEST_SUITE_P(QtApplication, EventEntries,
                         testing::Values(Entry { "AKey", byAKey }, Entry { "TheClock", byTheClock },
                                         Entry { "ACallThatWasPutOff", byACallThatWasPutOff },
                                         Entry { "ACallOverTheBus", byACallOverTheBus }),
                         [](const auto& tested) { return std::string(tested.param.name); });

} // namespace
