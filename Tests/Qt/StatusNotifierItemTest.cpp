#include "StatusNotifierItem.h"

#include "PrivateBus.h"
#include "StatusNotifierRegistration.h"

#include <gtest/gtest.h>

#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QImage>

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
    QTemporaryDir directory;
    SessionBus itemBus;
    BusClient host;
};

// An icon that is all of one colour.
StatusIcon iconOfColour(const QTemporaryDir& directory, QRgb colour)
{
    QImage image(64, 64, QImage::Format_ARGB32);
    image.fill(colour);
    const QString file = directory.filePath(QStringLiteral("icon.png"));
    EXPECT_TRUE(image.save(file));
    return StatusIcon(
        NSImage(std::make_shared<KnownImageSource>("icon", ImageFile { file.toStdString() }), { 16, 16 }));
}

TEST(StatusNotifierItem, HasThePropertiesOfTheTypesThatHostsExpect)
{
    ItemOnBus world;
    const StatusNotifierItem item(world.itemBus.connection(), iconOfColour(world.directory, 0xff112233), "/Menu",
                                  MenuDrawing::byUs);
    const QDBusMessage reply = world.call(kProperties, "GetAll", { kInterface });
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    const auto all = qdbus_cast<QVariantMap>(reply.arguments().at(0));

    const QVariantMap plain {
        { "Category", "ApplicationStatus" },
        { "Id", "quillbox" },
        { "Title", "Quillbox" },
        { "Status", "Active" },
        { "ItemIsMenu", false },
        { "WindowId", 0 },
    };
    for (auto property = plain.begin(); property != plain.end(); ++property)
        EXPECT_EQ(all.value(property.key()), property.value()) << property.key().toStdString();
    EXPECT_EQ(all.value("Menu").value<QDBusObjectPath>().path(), "/Menu");

    const auto toolTip = all.value("ToolTip").value<QDBusArgument>();
    EXPECT_EQ(toolTip.currentSignature(), "(sa(iiay)ss)");
    EXPECT_EQ(qdbus_cast<NotifierToolTip>(toolTip).title, "Quillbox");

    const auto pixmaps = all.value("IconPixmap").value<QDBusArgument>();
    EXPECT_EQ(pixmaps.currentSignature(), "a(iiay)");
    QList<int> widths;
    for (const NotifierPixmap& pixmap : qdbus_cast<NotifierPixmapList>(pixmaps)) {
        widths.append(pixmap.width);
        EXPECT_EQ(pixmap.height, pixmap.width);
        EXPECT_EQ(pixmap.pixels, QByteArray("\xff\x11\x22\x33").repeated(qsizetype { pixmap.width } * pixmap.width));
    }
    EXPECT_EQ(widths, (QList<int> { 16, 22, 24, 32, 48, 64 }));
}

TEST(StatusNotifierItem, AnswersEveryPropertyCall)
{
    ItemOnBus world;
    const StatusNotifierItem item(world.itemBus.connection(), StatusIcon(NSImage()), "/Menu", MenuDrawing::byUs);
    struct Case {
        const char* member;
        QVariantList arguments;
        QString error;
    };
    const Case cases[] = {
        { "Get", { kInterface, "Title" }, "" },
        { "Get", { "", "Title" }, "" },
        { "Get", { kInterface, "Colour" }, "org.freedesktop.DBus.Error.UnknownProperty" },
        { "Get", { "org.example.Other", "Title" }, "org.freedesktop.DBus.Error.UnknownInterface" },
        { "Get", { kInterface }, "org.freedesktop.DBus.Error.InvalidArgs" },
        { "Set",
          { kInterface, "Title", QVariant::fromValue(QDBusVariant("x")) },
          "org.freedesktop.DBus.Error.PropertyReadOnly" },
    };
    for (const Case& each : cases) {
        const QDBusMessage reply = world.call(kProperties, each.member, each.arguments);
        EXPECT_EQ(reply.errorName(), each.error) << each.member << " with " << each.arguments.size() << " arguments";
        if (each.error.isEmpty()) {
            EXPECT_EQ(reply.arguments().at(0).value<QDBusVariant>().variant().toString(), "Quillbox");
        }
    }
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

TEST(StatusNotifierItem, TakesTheCallsOfEveryHost)
{
    ItemOnBus world;
    StatusNotifierItem item(world.itemBus.connection(), StatusIcon(NSImage()), "/Menu", MenuDrawing::byUs);
    QStringList calls;
    item.onActivate = [&](QPoint) { calls.append("activate"); };
    item.onContextMenu = [&](QPoint point) { calls.append(QStringLiteral("context menu %1").arg(point.x())); };
    item.onActivationToken = [&](const QString& token) { calls.append("token " + token); };

    EXPECT_EQ(world.call(kInterface, "ProvideXdgActivationToken", { "t1" }).errorName(), "");
    EXPECT_EQ(world.call("", "Activate", { 1, 2 }).errorName(), "");
    EXPECT_EQ(world.call(kInterface, "ContextMenu", { 3, 4 }).errorName(), "");
    EXPECT_EQ(world.call(kInterface, "SecondaryActivate", { 5, 6 }).errorName(), "");
    EXPECT_EQ(world.call(kInterface, "Scroll", { 120, "vertical" }).errorName(), "");
    EXPECT_EQ(world.call(kInterface, "Activate", { "here" }).errorName(), "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_EQ(world.call(kInterface, "Explode", {}).errorName(), "org.freedesktop.DBus.Error.UnknownMethod");
    ASSERT_TRUE(waitUntil([&] { return calls.size() >= 3; }));
    EXPECT_EQ(calls, (QStringList { "token t1", "activate", "context menu 3" }));

    const QDBusMessage description = world.call("org.freedesktop.DBus.Introspectable", "Introspect", {});
    EXPECT_TRUE(description.arguments().at(0).toString().contains("ProvideXdgActivationToken"));
}

TEST(StatusNotifierItem, IsAMenuWithoutClicksWhereTheHostDrawsIt)
{
    ItemOnBus world;
    const StatusNotifierItem item(world.itemBus.connection(), StatusIcon(NSImage()), "/Menu", MenuDrawing::byHost);
    const QDBusMessage isMenu = world.call(kProperties, "Get", { kInterface, "ItemIsMenu" });
    EXPECT_TRUE(isMenu.arguments().at(0).value<QDBusVariant>().variant().toBool());
    for (const char* click : { "Activate", "ContextMenu" })
        EXPECT_EQ(world.call(kInterface, click, { 1, 2 }).errorName(), "org.freedesktop.DBus.Error.UnknownMethod");
    EXPECT_EQ(world.call(kInterface, "ProvideXdgActivationToken", { "t1" }).errorName(), "");
    const QString description =
        world.call("org.freedesktop.DBus.Introspectable", "Introspect", {}).arguments().at(0).toString();
    EXPECT_FALSE(description.contains("\"Activate\"") || description.contains("\"ContextMenu\""));
    EXPECT_TRUE(description.contains("\"Menu\"") && description.contains("NewStatus"));
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
