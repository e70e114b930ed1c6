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

// The first Quillbox on a bus of its own, another program there, and what it asked of Quillbox.
class SingleInstanceTest : public testing::Test {
protected:
    void claim(StartEnvironment environment = {})
    {
        first.emplace(std::move(environment));
        ASSERT_EQ(first->claim(), Outcome::first);
    }
    void record()
    {
        first->setHandlers(
            { [this] { calls.append("activate"); },
              { { "quit", [this] { calls.append("quit"); } } },
              [this](const std::string& token) { calls.append("token " + QString::fromStdString(token)); } });
    }
    // Waits for as many calls.
    void expect(const QStringList& expected)
    {
        EXPECT_TRUE(waitUntil([&] { return calls.size() >= expected.size(); }));
        EXPECT_EQ(calls, expected);
    }

    PrivateBus bus;
    BusClient client;
    std::optional<SingleInstance> first;
    QStringList calls;
};

TEST_F(SingleInstanceTest, StartingAgainActivatesTheOneThatRuns)
{
    claim();
    record();
    EXPECT_EQ(startAgain({ "token-1", false }), Outcome::handedOver);
    EXPECT_EQ(startAgain({}), Outcome::handedOver);
    expect({ "token token-1", "activate", "activate" });
    first.reset();
    claim();
}

TEST_F(SingleInstanceTest, CallsThatComeBeforeTheHandlersAreKept)
{
    claim();
    client.begin(kName, kPath, kInterface, "Activate", { QVariantMap() });
    record();
    expect({ "activate" });
}

TEST_F(SingleInstanceTest, TheActivationThatStartedItOpensNothing)
{
    bus.offer(kName);
    // A terminal that the bus has started hands its mark on, without any call.
    for (const bool isCalled : { true, false }) {
        SCOPED_TRACE(isCalled);
        std::optional<QDBusPendingCallWatcher> answer;
        if (isCalled)
            answer.emplace(client.begin(kName, kPath, kInterface, "Activate",
                                        { QVariantMap { { "activation-token", "first" } } }));
        // Answered once the bus has taken the call before it.
        client.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");

        claim({ "", true });
        record();
        EXPECT_TRUE(waitUntil([&] { return !answer || answer->isFinished(); }));
        EXPECT_FALSE(answer && answer->isError());
        EXPECT_EQ(startAgain({ "second", false }), Outcome::handedOver);
        expect({ "token second", "activate" });
        first.reset();
        calls.clear();
    }
}

TEST_F(SingleInstanceTest, AnswersFilesAndActions)
{
    claim();
    record();
    const auto error = [this](const QString& member, const QVariantList& arguments) {
        return client.call(kName, kPath, kInterface, member, arguments).errorName();
    };
    const QVariantMap token { { "desktop-startup-id", "t" } };
    EXPECT_EQ(error("Open", { QStringList { "file:///a" }, QVariantMap() }), "");
    EXPECT_EQ(error("ActivateAction", { "quit", QVariantList(), token }), "");
    EXPECT_EQ(error("ActivateAction", { "explode", QVariantList(), QVariantMap() }),
              "org.freedesktop.DBus.Error.InvalidArgs");
    expect({ "activate", "token t", "quit" });
}

TEST_F(SingleInstanceTest, OneThatHasTheNameButNoAnswerIsReported)
{
    ASSERT_TRUE(client.connection().registerService(kName));
    EXPECT_EQ(startAgain({}), Outcome::notAnswered);
}

TEST_F(SingleInstanceTest, RunsUnguardedWithoutABus)
{
    const QByteArray runtimeDirectory = qgetenv("XDG_RUNTIME_DIR");
    const QTemporaryDir empty;
    qputenv("XDG_RUNTIME_DIR", empty.path().toUtf8());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(SingleInstance({}).claim(), Outcome::unguarded);
    qputenv("XDG_RUNTIME_DIR", runtimeDirectory);
}

} // namespace
