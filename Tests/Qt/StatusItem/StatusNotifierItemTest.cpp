#include "StatusNotifierItem.h"

#include "HeldActivationToken.h"
#include "IconThemes.h"
#include "ManualClock.h"
#include "Palettes.h"
#include "PrivateBus.h"
#include "StatusNotifierRegistration.h"

#include <gtest/gtest.h>

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
class ItemOnBus : public testing::Test {
protected:
    StatusNotifierItem make(MenuDrawing drawing, const NSImage& image = {})
    {
        return StatusNotifierItem(itemBus.connection(), StatusIcon(image), "/Menu", drawing);
    }
    QDBusPendingCall begin(const QString& member, const QVariantList& arguments)
    {
        return host.begin(itemBus.connection().baseService(), kPath, kInterface, member, arguments);
    }
    QDBusMessage call(const QString& interface, const QString& member, const QVariantList& arguments)
    {
        return host.call(itemBus.connection().baseService(), kPath, interface, member, arguments);
    }

    PrivateBus bus;
    SessionBus itemBus;
    BusClient host;
};

TEST_F(ItemOnBus, HasThePropertiesOfTheTypesThatHostsExpect)
{
    const TemporaryDirectory directory;
    const std::string file = directory.writeFile("icon.svg", plainSvg("#123"));
    const StatusNotifierItem item =
        make(MenuDrawing::byUs, NSImage(std::make_shared<KnownImageSource>("icon", ImageFile { file }), { 16, 16 }));
    const QDBusMessage reply = call(kProperties, "GetAll", { kInterface });
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

TEST_F(ItemOnBus, AnswersAClickBeforeItIsHandled)
{
    StatusNotifierItem item = make(MenuDrawing::byUs);
    std::optional<QDBusPendingCallWatcher> pending;
    QPoint place;
    bool wasAnswered = false;
    item.onActivate = [&](QPoint point) {
        place = point;
        wasAnswered = waitUntil([&] { return pending->isFinished(); });
    };
    pending.emplace(begin("Activate", { 15, 14 }));
    ASSERT_TRUE(waitUntil([&] { return !place.isNull(); }));
    EXPECT_EQ(place, QPoint(15, 14));
    EXPECT_TRUE(wasAnswered);
    EXPECT_FALSE(pending->isError());
}

// What the host hears of an activation token, and when; it shows a busy pointer until it hears.
TEST_F(ItemOnBus, ItsActivationTokenIsRefusedWhereTheClickHasUsedItForNothing)
{
    const struct {
        const char* name;
        bool isClick;
        bool isTaken;
        bool isRefused;
    } cases[] = {
        { "a program was started", true, true, false },
        { "a row that starts nothing", true, false, true },
        { "no click on a row came", false, false, false },
    };
    StatusNotifierItem item = make(MenuDrawing::byHost);
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        ManualClock clock;
        HeldActivationToken held;
        held.isTaken = [&] { return test.isTaken; };
        bool hasCome = false;
        item.onActivationToken = [&](const QDBusMessage& call) {
            hasCome = true;
            return held.hold(call, itemBus.connection());
        };
        const QDBusPendingCallWatcher pending(begin("ProvideXdgActivationToken", { "t1" }));
        ASSERT_TRUE(waitUntil([&] { return hasCome; }));
        EXPECT_FALSE(pending.isFinished());
        if (test.isClick) {
            held.clickCame();
            held.actionEnded();
        } else {
            clock.advance(std::chrono::milliseconds(300));
        }
        ASSERT_TRUE(waitUntil([&] { return pending.isFinished(); }));
        EXPECT_EQ(pending.isError(), test.isRefused);
        EXPECT_EQ(clock.pendingCount(), 0U);
    }
}

TEST_F(ItemOnBus, TakesTheCallsOfEveryHost)
{
    StatusNotifierItem item = make(MenuDrawing::byUs);
    QStringList calls;
    item.onActivate = [&](QPoint) { calls.append("activate"); };
    item.onContextMenu = [&](QPoint point) { calls.append(QStringLiteral("context menu %1").arg(point.x())); };
    item.onActivationToken = [&](const QDBusMessage& call) {
        calls.append("token " + call.arguments().at(0).toString());
        return false;
    };

    EXPECT_EQ(call(kInterface, "ProvideXdgActivationToken", { "t1" }).errorName(), "");
    EXPECT_EQ(call("", "Activate", { 1, 2 }).errorName(), "");
    EXPECT_EQ(call(kInterface, "ContextMenu", { 3, 4 }).errorName(), "");
    EXPECT_EQ(call(kInterface, "Scroll", { 120, "vertical" }).errorName(), "");
    EXPECT_EQ(call(kInterface, "Activate", { "here" }).errorName(), "org.freedesktop.DBus.Error.InvalidArgs");
    ASSERT_TRUE(waitUntil([&] { return calls.size() >= 3; }));
    EXPECT_EQ(calls, (QStringList { "token t1", "activate", "context menu 3" }));
}

TEST_F(ItemOnBus, IsAMenuWithoutClicksWhereTheHostDrawsIt)
{
    const StatusNotifierItem item = make(MenuDrawing::byHost);
    const QDBusMessage isMenu = call(kProperties, "Get", { kInterface, "ItemIsMenu" });
    EXPECT_TRUE(isMenu.arguments().at(0).value<QDBusVariant>().variant().toBool());
    for (const char* click : { "Activate", "ContextMenu" })
        EXPECT_EQ(call(kInterface, click, { 1, 2 }).errorName(), "org.freedesktop.DBus.Error.UnknownMethod");
    const QString description =
        call("org.freedesktop.DBus.Introspectable", "Introspect", {}).arguments().at(0).toString();
    EXPECT_FALSE(description.contains("\"Activate\"") || description.contains("\"ContextMenu\""));
    EXPECT_TRUE(description.contains("\"Menu\""));
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
    for (const bool hasHost : { true, false, true }) {
        statusBar.setHasHost(hasHost);
        EXPECT_TRUE(waitUntil([&] { return registration.isShown() == hasHost; }));
    }
    bus.stop();
    EXPECT_TRUE(waitUntil([&] { return !registration.isShown(); }));
    EXPECT_EQ(changes, 4);
    EXPECT_EQ(statusBar.registeredItems.size(), 1);
}

} // namespace
