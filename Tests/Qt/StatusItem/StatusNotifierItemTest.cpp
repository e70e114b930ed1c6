#include "StatusNotifierItem.h"

#include "HeldActivationToken.h"
#include "ManualClock.h"
#include "Palettes.h"
#include "PrivateBus.h"
#include "StatusNotifierRegistration.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <optional>

using namespace quillbox;

namespace {

const QString kPath = QStringLiteral("/StatusNotifierItem");
const QString kInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

// An item on a bus of its own, and a host that talks to it.
struct ItemOnBus {
    QDBusMessage call(const QString& interface, const QString& member, const QVariantList& arguments)
    {
        return host.call(itemBus.connection().baseService(), kPath, interface, member, arguments);
    }

    PrivateBus bus;
    SessionBus itemBus;
    BusClient host;
};

TEST(StatusNotifierItem, HasThePropertiesOfTheTypesThatHostsExpect)
{
    ItemOnBus world;
    const TemporaryDirectory directory;
    const std::string file = directory.writeFile(
        "icon.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' height='9' fill='#123'/></svg>");
    const StatusIcon icon(NSImage(std::make_shared<KnownImageSource>("icon", ImageFile { file }), { 16, 16 }));
    const StatusNotifierItem item(world.itemBus.connection(), icon, "/Menu", MenuDrawing::byUs);
    const QDBusMessage reply = world.call(kProperties, "GetAll", { kInterface });
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    const auto all = qdbus_cast<QVariantMap>(reply.arguments().at(0));

    EXPECT_EQ(all.value("Menu").value<QDBusObjectPath>().path(), "/Menu");

    EXPECT_EQ(all.value("ToolTip").value<QDBusArgument>().currentSignature(), "(sa(iiay)ss)");

    const auto pixmaps = all.value("IconPixmap").value<QDBusArgument>();
    EXPECT_EQ(pixmaps.currentSignature(), "a(iiay)");
    const auto images = qdbus_cast<NotifierPixmapList>(pixmaps);
    EXPECT_FALSE(images.isEmpty());
    for (const NotifierPixmap& pixmap : images) {
        EXPECT_EQ(pixmap.height, pixmap.width);
        EXPECT_EQ(pixmap.pixels, QByteArray("\xff\x11\x22\x33").repeated(qsizetype { pixmap.width } * pixmap.width));
    }
}

TEST(StatusIcon, CanBeReadOnLightAndOnDarkPanels)
{
    for (const char* panel : { "#f6f5f4", "#202020" })
        EXPECT_GE(contrast(StatusIcon::neutralColour(), QColor(panel)), 3.8) << panel;
}

TEST(StatusNotifierItem, AnswersAClickBeforeItIsHandled)
{
    ItemOnBus world;
    StatusNotifierItem item(world.itemBus.connection(), StatusIcon(NSImage()), "/Menu", MenuDrawing::byUs);
    QDBusMessage click = QDBusMessage::createMethodCall(world.itemBus.connection().baseService(), kPath, kInterface,
                                                        QStringLiteral("Activate"));
    click.setArguments({ 15, 14 });
    std::optional<QDBusPendingCallWatcher> pending;
    QPoint place;
    bool wasAnswered = false;
    item.onActivate = [&](QPoint point) {
        place = point;
        wasAnswered = waitUntil([&] { return pending->isFinished(); });
    };
    pending.emplace(world.host.connection().asyncCall(click));
    ASSERT_TRUE(waitUntil([&] { return !place.isNull(); }));
    EXPECT_EQ(place, QPoint(15, 14));
    EXPECT_TRUE(wasAnswered);
    EXPECT_FALSE(pending->isError());
}

// What the host hears of an activation token, and when; it shows a busy pointer until it hears.
TEST(HeldActivationToken, IsRefusedWhereTheClickHasUsedItForNothing)
{
    struct Case {
        const char* name;
        bool isClick;
        bool isTaken;
        bool isRefused;
    };
    for (const Case& test :
         { Case { "a program was started", true, true, false }, Case { "a row that starts nothing", true, false, true },
           Case { "no click on a row came", false, false, false } }) {
        ItemOnBus world;
        ManualClock clock;
        StatusNotifierItem item(world.itemBus.connection(), StatusIcon(NSImage()), "/Menu", MenuDrawing::byHost);
        HeldActivationToken held;
        held.isTaken = [&] { return test.isTaken; };
        bool hasCome = false;
        item.onActivationToken = [&](const QDBusMessage& call) {
            hasCome = true;
            return held.hold(call, world.itemBus.connection());
        };
        QDBusMessage token = QDBusMessage::createMethodCall(world.itemBus.connection().baseService(), kPath, kInterface,
                                                            QStringLiteral("ProvideXdgActivationToken"));
        token.setArguments({ "t1" });
        const QDBusPendingCallWatcher pending(world.host.connection().asyncCall(token));
        ASSERT_TRUE(waitUntil([&] { return hasCome; })) << test.name;
        EXPECT_FALSE(pending.isFinished()) << test.name;
        if (test.isClick) {
            held.clickCame();
            held.actionEnded();
        } else {
            clock.advance(std::chrono::milliseconds(300));
        }
        ASSERT_TRUE(waitUntil([&] { return pending.isFinished(); })) << test.name;
        EXPECT_EQ(pending.isError(), test.isRefused) << test.name;
        EXPECT_EQ(clock.pendingCount(), 0U) << test.name;
    }
}

TEST(StatusNotifierItem, TakesTheCallsOfEveryHost)
{
    ItemOnBus world;
    StatusNotifierItem item(world.itemBus.connection(), StatusIcon(NSImage()), "/Menu", MenuDrawing::byUs);
    QStringList calls;
    item.onActivate = [&](QPoint) { calls.append("activate"); };
    item.onContextMenu = [&](QPoint point) { calls.append(QStringLiteral("context menu %1").arg(point.x())); };
    item.onActivationToken = [&](const QDBusMessage& call) {
        calls.append("token " + call.arguments().at(0).toString());
        return false;
    };

    EXPECT_EQ(world.call(kInterface, "ProvideXdgActivationToken", { "t1" }).errorName(), "");
    EXPECT_EQ(world.call("", "Activate", { 1, 2 }).errorName(), "");
    EXPECT_EQ(world.call(kInterface, "ContextMenu", { 3, 4 }).errorName(), "");
    EXPECT_EQ(world.call(kInterface, "Scroll", { 120, "vertical" }).errorName(), "");
    EXPECT_EQ(world.call(kInterface, "Activate", { "here" }).errorName(), "org.freedesktop.DBus.Error.InvalidArgs");
    ASSERT_TRUE(waitUntil([&] { return calls.size() >= 3; }));
    EXPECT_EQ(calls, (QStringList { "token t1", "activate", "context menu 3" }));
}

TEST(StatusNotifierItem, IsAMenuWithoutClicksWhereTheHostDrawsIt)
{
    ItemOnBus world;
    const StatusNotifierItem item(world.itemBus.connection(), StatusIcon(NSImage()), "/Menu", MenuDrawing::byHost);
    const QDBusMessage isMenu = world.call(kProperties, "Get", { kInterface, "ItemIsMenu" });
    EXPECT_TRUE(isMenu.arguments().at(0).value<QDBusVariant>().variant().toBool());
    for (const char* click : { "Activate", "ContextMenu" })
        EXPECT_EQ(world.call(kInterface, click, { 1, 2 }).errorName(), "org.freedesktop.DBus.Error.UnknownMethod");
    const QString description =
        world.call("org.freedesktop.DBus.Introspectable", "Introspect", {}).arguments().at(0).toString();
    EXPECT_FALSE(description.contains("\"Activate\"") || description.contains("\"ContextMenu\""));
    EXPECT_TRUE(description.contains("\"Menu\""));
}

TEST(StatusNotifierRegistration, RegistersAgainWheneverAWatcherStarts)
{
    PrivateBus bus;
    SessionBus itemBus;
    StatusNotifierRegistration registration(itemBus.connection());
    for (int round = 0; round < 3; ++round) {
        {
            const FakeStatusBar statusBar;
            EXPECT_TRUE(waitUntil([&] { return registration.isShown(); })) << "round " << round;
            EXPECT_EQ(statusBar.registeredItems, QStringList { itemBus.connection().baseService() });
        }
        EXPECT_TRUE(waitUntil([&] { return !registration.isShown(); })) << "round " << round;
    }
}

TEST(StatusNotifierRegistration, IsShownOnlyWhileAHostIsThere)
{
    PrivateBus bus;
    FakeStatusBar statusBar(false);
    SessionBus itemBus;
    StatusNotifierRegistration registration(itemBus.connection());
    int changes = 0;
    registration.onShownChanged = [&changes] { ++changes; };
    ASSERT_TRUE(waitUntil([&] { return !statusBar.registeredItems.isEmpty(); }));
    EXPECT_FALSE(registration.isShown());
    statusBar.setHasHost(true);
    EXPECT_TRUE(waitUntil([&] { return registration.isShown(); }));
    statusBar.setHasHost(false);
    EXPECT_TRUE(waitUntil([&] { return !registration.isShown(); }));
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(statusBar.registeredItems.size(), 1);
}

TEST(StatusNotifierRegistration, IsNotShownOnceTheBusIsGone)
{
    PrivateBus bus;
    auto statusBar = std::make_unique<FakeStatusBar>();
    SessionBus itemBus;
    StatusNotifierRegistration registration(itemBus.connection());
    ASSERT_TRUE(waitUntil([&] { return registration.isShown(); }));
    bus.stop();
    EXPECT_TRUE(waitUntil([&] { return !registration.isShown(); }));
}

} // namespace
