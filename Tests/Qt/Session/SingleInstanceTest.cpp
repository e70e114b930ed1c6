#include "SingleInstance.h"

#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>

#include <atomic>
#include <optional>
#include <thread>

using namespace quillbox;
using Outcome = SingleInstance::Outcome;
using StartEnvironment = SingleInstance::StartEnvironment;

namespace {

const QString kName = QStringLiteral("org.quillbox.Quillbox");
const QString kPath = QStringLiteral("/org/quillbox/Quillbox");
const QString kInterface = QStringLiteral("org.freedesktop.Application");

// Starts Quillbox once more, beside this thread, which answers it meanwhile.
Outcome startAgain(StartEnvironment environment)
{
    std::atomic<bool> isDone = false;
    Outcome outcome {};
    std::thread other([&] {
        outcome = SingleInstance(std::move(environment)).claim();
        isDone = true;
        QMetaObject::invokeMethod(
            qApp, [] {}, Qt::QueuedConnection);
    });
    EXPECT_TRUE(waitUntil([&isDone] { return isDone.load(); }));
    other.join();
    return outcome;
}

// Records what a Quillbox was asked to do.
SingleInstance::Handlers recordInto(QStringList& calls)
{
    return { [&calls] { calls.append("activate"); },
             { { "quit", [&calls] { calls.append("quit"); } } },
             [&calls](const std::string& token) { calls.append("token " + QString::fromStdString(token)); } };
}

TEST(SingleInstance, StartingAgainActivatesTheOneThatRuns)
{
    PrivateBus bus;
    QStringList calls;
    {
        SingleInstance first({});
        ASSERT_EQ(first.claim(), Outcome::first);
        first.setHandlers(recordInto(calls));
        EXPECT_EQ(startAgain({ "token-1", false }), Outcome::handedOver);
        EXPECT_EQ(startAgain({}), Outcome::handedOver);
        EXPECT_TRUE(waitUntil([&] { return calls.size() >= 3; }));
        EXPECT_EQ(calls, (QStringList { "token token-1", "activate", "activate" }));
    }
    EXPECT_EQ(SingleInstance({}).claim(), Outcome::first);
}

TEST(SingleInstance, CallsThatComeBeforeTheHandlersAreKept)
{
    PrivateBus bus;
    SingleInstance first({});
    ASSERT_EQ(first.claim(), Outcome::first);
    BusClient client;
    client.begin(kName, kPath, kInterface, "Activate", { QVariantMap() });
    QStringList calls;
    first.setHandlers(recordInto(calls));
    EXPECT_TRUE(waitUntil([&] { return !calls.isEmpty(); }));
    EXPECT_EQ(calls, QStringList { "activate" });
}

TEST(SingleInstance, TheActivationThatStartedItOpensNothing)
{
    // A terminal that the bus has started hands its mark on, without any call.
    for (const bool isCalled : { true, false }) {
        PrivateBus bus;
        bus.offer(kName);
        BusClient launcher;
        std::optional<QDBusPendingCallWatcher> answer;
        if (isCalled)
            answer.emplace(launcher.begin(kName, kPath, kInterface, "Activate",
                                          { QVariantMap { { "activation-token", "first" } } }));
        // Answered once the bus has taken the call before it.
        launcher.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");

        SingleInstance first({ "", true });
        ASSERT_EQ(first.claim(), Outcome::first);
        QStringList calls;
        first.setHandlers(recordInto(calls));
        EXPECT_TRUE(waitUntil([&] { return !answer || answer->isFinished(); }));
        EXPECT_FALSE(answer && answer->isError());
        EXPECT_EQ(startAgain({ "second", false }), Outcome::handedOver);
        EXPECT_TRUE(waitUntil([&] { return calls.size() >= 2; }));
        EXPECT_EQ(calls, (QStringList { "token second", "activate" })) << isCalled;
    }
}

TEST(SingleInstance, AnswersFilesAndActions)
{
    PrivateBus bus;
    SingleInstance first({});
    ASSERT_EQ(first.claim(), Outcome::first);
    QStringList calls;
    first.setHandlers(recordInto(calls));
    BusClient client;
    const auto error = [&client](const QString& member, const QVariantList& arguments) {
        return client.call(kName, kPath, kInterface, member, arguments).errorName();
    };
    const QVariantMap token { { "desktop-startup-id", "t" } };
    EXPECT_EQ(error("Open", { QStringList { "file:///a" }, QVariantMap() }), "");
    EXPECT_EQ(error("ActivateAction", { "quit", QVariantList(), token }), "");
    EXPECT_EQ(error("ActivateAction", { "explode", QVariantList(), QVariantMap() }),
              "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_TRUE(waitUntil([&] { return calls.size() >= 3; }));
    EXPECT_EQ(calls, (QStringList { "activate", "token t", "quit" }));
}

TEST(SingleInstance, OneThatHasTheNameButNoAnswerIsReported)
{
    PrivateBus bus;
    BusClient other;
    ASSERT_TRUE(other.connection().registerService(kName));
    EXPECT_EQ(startAgain({}), Outcome::notAnswered);
}

TEST(SingleInstance, RunsUnguardedWithoutABus)
{
    PrivateBus bus;
    const QByteArray runtimeDirectory = qgetenv("XDG_RUNTIME_DIR");
    const QTemporaryDir empty;
    qputenv("XDG_RUNTIME_DIR", empty.path().toUtf8());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(SingleInstance({}).claim(), Outcome::unguarded);
    qputenv("XDG_RUNTIME_DIR", runtimeDirectory);
}

} // namespace
