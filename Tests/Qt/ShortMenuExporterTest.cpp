#include "ShortMenuExporter.h"

#include "DBusMenuTypes.h"
#include "HeadlessDesktop.h"
#include "NSApplication.h"
#include "PrivateBus.h"

#include <gtest/gtest.h>

#include <QTimer>

using namespace quillbox;

namespace {

const QString kPath = QStringLiteral("/Menu");
const QString kInterface = QStringLiteral("com.canonical.dbusmenu");
const QString kInvalid = QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs");

class Chooser final : public NSObject {
public:
    void choose(NSMenuItem* item) { chosen.append(QString::fromStdString(item->title())); }
    QStringList chosen;
};
const Selector kChoose = makeSelector<&Chooser::choose>("choose:");

// A menu of four rows on a bus of its own, and a host that talks to it.
class ShortMenuExporterTest : public testing::Test {
protected:
    ShortMenuExporterTest()
    {
        addRow("Open my_menu", true);
        menu->addItem(NSMenuItem::separatorItem());
        addRow("Nothing", false);
        addRow("Quit", true);
        exporter = std::make_unique<ShortMenuExporter>(itemBus.connection(), kPath, menu);
    }

    void addRow(const std::string& title, bool hasAction)
    {
        auto item = std::make_shared<NSMenuItem>(title, hasAction ? &kChoose : nullptr);
        item->setTarget(chooser);
        menu->addItem(std::move(item));
    }

    QDBusMessage call(const QString& member, const QVariantList& arguments)
    {
        return host.call(itemBus.connection().baseService(), kPath, kInterface, member, arguments);
    }
    QDBusMessage click(int id) { return call("Event", { id, "clicked", QVariant::fromValue(QDBusVariant(0)), 0U }); }

    // The layout below `parent` as text: revision, then per row its id and properties.
    QString layout(int parent, int depth, const QStringList& names = {})
    {
        const QDBusMessage reply = call("GetLayout", { parent, depth, names });
        if (reply.type() != QDBusMessage::ReplyMessage)
            return reply.errorName();
        QString text = QStringLiteral("r%1").arg(reply.arguments().at(0).toUInt());
        const auto root = qdbus_cast<DBusMenuLayout>(reply.arguments().at(1));
        for (const DBusMenuLayout& row : root.children)
            text += describe(row.id, row.properties);
        return root.children.isEmpty() ? text + describe(root.id, root.properties) : text;
    }
    static QString describe(int id, const QVariantMap& properties)
    {
        QString text = QStringLiteral(" | %1").arg(id);
        for (auto property = properties.begin(); property != properties.end(); ++property)
            text += QStringLiteral(" %1=%2").arg(property.key(), property.value().toString());
        return text;
    }

    PrivateBus bus;
    HeadlessDesktop desktop;
    SessionBus itemBus;
    BusClient host;
    std::shared_ptr<Chooser> chooser = std::make_shared<Chooser>();
    std::shared_ptr<NSMenu> menu = std::make_shared<NSMenu>();
    std::unique_ptr<ShortMenuExporter> exporter;
};

TEST_F(ShortMenuExporterTest, GivesTheLayoutAsDeepAndAsRichAsAsked)
{
    const QString whole =
        "r1 | 1 label=Open my__menu | 2 type=separator | 3 enabled=false label=Nothing | 4 label=Quit";
    EXPECT_EQ(layout(0, -1), whole);
    EXPECT_EQ(layout(0, 1), whole);
    EXPECT_EQ(layout(0, 0), "r1 | 0 children-display=submenu");
    EXPECT_EQ(layout(0, -1, { "enabled", "no such" }), "r1 | 1 | 2 | 3 enabled=false | 4");
    EXPECT_EQ(layout(4, -1), "r1 | 4 label=Quit");
    EXPECT_EQ(layout(99, -1), kInvalid);
    EXPECT_EQ(layout(-1, -1), kInvalid);
}

TEST_F(ShortMenuExporterTest, AnswersEveryQuestionAboutProperties)
{
    const auto property = [this](int id, const QString& name) {
        const QDBusMessage reply = call("GetProperty", { id, name });
        return reply.type() == QDBusMessage::ReplyMessage
            ? reply.arguments().at(0).value<QDBusVariant>().variant().toString()
            : reply.errorName();
    };
    EXPECT_EQ(property(1, "label"), "Open my__menu");
    EXPECT_EQ(property(1, "enabled"), "true");
    EXPECT_EQ(property(3, "enabled"), "false");
    EXPECT_EQ(property(0, "children-display"), "submenu");
    EXPECT_EQ(property(1, "colour"), kInvalid);
    EXPECT_EQ(property(99, "label"), kInvalid);

    const auto group = [this](const QList<int>& ids, const QStringList& names) {
        const QDBusMessage reply = call("GetGroupProperties", { QVariant::fromValue(ids), names });
        QString text;
        for (const auto& item : qdbus_cast<DBusMenuPropertiesList>(reply.arguments().value(0)))
            text += describe(item.id, item.properties);
        return text;
    };
    EXPECT_EQ(group({ 4, 99, 1 }, {}), " | 4 label=Quit | 1 label=Open my__menu");
    EXPECT_EQ(group({}, { "type" }), " | 0 | 1 | 2 type=separator | 3 | 4");
}

TEST_F(ShortMenuExporterTest, AClickRunsTheRowsActionOnce)
{
    EXPECT_EQ(click(1).errorName(), "");
    EXPECT_EQ(click(2).errorName(), "");
    EXPECT_EQ(click(3).errorName(), "");
    EXPECT_EQ(click(99).errorName(), kInvalid);
    EXPECT_EQ(call("Event", { 4, "hovered", QVariant::fromValue(QDBusVariant(0)), 0U }).errorName(), "");
    const DBusMenuEventList events { { 77, "clicked", QDBusVariant(0), 0 }, { 4, "clicked", QDBusVariant(0), 0 } };
    const QDBusMessage reply = call("EventGroup", { QVariant::fromValue(events) });
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int> { 77 });
    ASSERT_TRUE(waitUntil([this] { return chooser->chosen.size() >= 2; }));
    EXPECT_EQ(chooser->chosen, (QStringList { "Open my_menu", "Quit" }));
}

TEST_F(ShortMenuExporterTest, AClickWhileAnAlertRunsBringsTheAlertForward)
{
    desktop.duringAlert = [this] {
        click(1);
        EXPECT_TRUE(waitUntil([this] { return desktop.activations > 0; }));
    };
    NSAlert().runModal();
    EXPECT_EQ(desktop.activations, 1);
    EXPECT_EQ(chooser->chosen, QStringList());
}

TEST_F(ShortMenuExporterTest, AChangedMenuIsToldOnceAndItsOldIdsStayUnused)
{
    const auto aboutToShow = [this](int id) {
        const QDBusMessage reply = call("AboutToShow", { id });
        return reply.errorName().isEmpty() ? reply.arguments().at(0).toString() : reply.errorName();
    };
    EXPECT_EQ(aboutToShow(0), "false");
    EXPECT_EQ(aboutToShow(1), "false");
    EXPECT_EQ(aboutToShow(99), kInvalid);

    QTimer layoutUpdated;
    layoutUpdated.setSingleShot(true);
    int updates = 0;
    QObject::connect(&layoutUpdated, &QTimer::timeout, [&updates] { ++updates; });
    host.connection().connect(itemBus.connection().baseService(), kPath, kInterface, "LayoutUpdated", &layoutUpdated,
                              SLOT(start()));
    menu->removeAllItems();
    addRow("New", true);
    EXPECT_EQ(click(1).errorName(), "");
    const QDBusMessage group = call("AboutToShowGroup", { QVariant::fromValue(QList<int> { 99, 0 }) });
    EXPECT_EQ(qdbus_cast<QList<int>>(group.arguments().value(0)), QList<int> { 0 });
    EXPECT_EQ(qdbus_cast<QList<int>>(group.arguments().value(1)), QList<int> { 99 });
    EXPECT_EQ(layout(0, -1), "r2 | 5 label=New");
    EXPECT_EQ(aboutToShow(0), "false");
    EXPECT_EQ(click(1).errorName(), kInvalid);
    EXPECT_EQ(click(5).errorName(), "");
    EXPECT_TRUE(waitUntil([&] { return !chooser->chosen.isEmpty() && updates > 0; }));
    EXPECT_EQ(chooser->chosen, QStringList { "New" });
    EXPECT_EQ(updates, 1);
}

} // namespace
