#include "MenuExporter.h"

#include "MenuHost.h"
#include "MenuWorld.h"
#include "SessionBus.h"

#include <gtest/gtest.h>

#include <array>

using namespace quillbox;
using namespace std::chrono_literals;

namespace {

const QString kPath = QStringLiteral("/Menu");
const QString kInvalid = QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs");

// A menu of the model on a bus of its own, and a host that draws it.
class MenuExporterTest : public testing::Test {
protected:
    MenuExporterTest()
    {
        exporter.fill();
        world.log.clear();
    }

    std::string run(const std::string& script)
    {
        return host.run(script, [this] { return world.takeLog(); });
    }

    // Each row's id and the names of its properties.
    QStringList properties(const QList<int>& ids, const QStringList& names)
    {
        QStringList text;
        const QDBusMessage reply = host.call("GetGroupProperties", { QVariant::fromValue(ids), names });
        for (const auto& row : qdbus_cast<DBusMenuPropertiesList>(reply.arguments().value(0)))
            text.append(QStringLiteral("%1 %2").arg(row.id).arg(row.properties.keys().join(u' ')));
        return text;
    }

    PrivateBus bus;
    MenuWorld world { { { "top", "my_note, -, Papers/, Places//" },
                        { "Papers", "a, Letters/" },
                        { "Letters", "dear" },
                        { "Places", "home, root" } } };
    SessionBus itemBus;
    MenuExporter exporter { itemBus.connection(), kPath, world.top, nullptr, {} };
    MenuHost host { itemBus.connection().baseService(), kPath };
};

// What panels call, in their order, while a person opens Papers, goes on to Letters and chooses "dear"; then calls
// in orders that come of no panel we know. Each line is a call and all that has to come of it.
struct HostScript {
    const char* name;
    std::string script;
};

const HostScript kScripts[] = {
    { "Plasma", R"(get top: 1 my__note, 2 ---, 3 Papers, 4 Places r1
about top: false; update top, open top
opened top:
about Papers: true; r2 below 3; update Papers, open Papers
get Papers: 5 Open Papers, 6 ---, 7 a, 8 Letters r2
opened Papers:
about Letters: true; r3 below 8; update Letters, open Letters
get Letters: 9 Open Letters, 10 ---, 11 dear r3
opened Letters:
clicked dear: close Letters, close Papers, close top, chose dear with 0 popups
closed Letters:
closed Papers:
closed top:
)" },
    // Closes before it clicks.
    { "GnomeExtension", R"(get top: 1 my__note, 2 ---, 3 Papers, 4 Places r1
opened top: update top, open top
about top: false
opened Papers: r2 below 3; update Papers, open Papers
about Papers: true
get Papers: 5 Open Papers, 6 ---, 7 a, 8 Letters r2
about Letters: true; r3 below 8; update Letters, open Letters
opened Letters:
get Letters: 9 Open Letters, 10 ---, 11 dear r3
closed Letters:
closed Papers:
closed top:
clicked dear: close Letters, close Papers, close top, chose dear with 0 popups
)" },
    { "TheSameAgainIsAnotherOpening", R"(get top: 1 my__note, 2 ---, 3 Papers, 4 Places r1
about Papers: true; r2 below 3; update top, open top, update Papers, open Papers
get Papers: 5 Open Papers, 6 ---, 7 a, 8 Letters r2
about Papers: true; r3 below 3; close Papers, update Papers, open Papers
get Papers: 5 Open Papers, 6 ---, 7 a, 8 Letters r3
opened Papers:
opened Papers: r4 below 3; close Papers, update Papers, open Papers
about top: false; close Papers, close top, update top, open top
get Papers:  r4
clicked my__note: close top, chose my_note with 0 popups
)" },
    { "ALevelBesideClosesTheOtherOne", R"(get top: 1 my__note, 2 ---, 3 Papers, 4 Places r1
about Papers: true; r2 below 3; update top, open top, update Papers, open Papers
get Papers: 5 Open Papers, 6 ---, 7 a, 8 Letters r2
about Places: true; r3 below 4; close Papers, update Places, open Places
get Places: 9 home, 10 root r3
about Papers: true; r4 below 3; close Places, update Papers, open Papers
get Places: 9 home, 10 root r4
clicked home: close Papers, update Places, open Places, close Places, close top, chose home with 0 popups
clicked Open Papers: update top, open top, close top, chose Papers with 0 popups
)" },
};

class HostScripts : public MenuExporterTest, public testing::WithParamInterface<HostScript> { };

TEST_P(HostScripts, OpenTheLevelsOnceAndInOrder)
{
    EXPECT_EQ(run(GetParam().script), GetParam().script);
    EXPECT_EQ(world.clock.pendingCount(), 0U);
}

INSTANTIATE_TEST_SUITE_P(MenuExporter, HostScripts, testing::ValuesIn(kScripts),
                         [](const auto& script) { return std::string(script.param.name); });

TEST_F(MenuExporterTest, TheModelClosesWhenNoClickFollows)
{
    run("get top\nabout Papers\nget Papers\nclosed Papers\nclosed top");
    world.clock.advance(900ms);
    EXPECT_EQ(world.takeLog(), "");
    world.clock.advance(100ms);
    EXPECT_EQ(world.takeLog(), "close Papers, close top");
    EXPECT_EQ(world.clock.pendingCount(), 0U);
}

// Panels of GTK close their menus without a word of the top level; what was listed must not stay for that.
TEST_F(MenuExporterTest, TheModelClosesWhenTheHostIsSilentWithNothingOpen)
{
    run("get top\nabout top\nabout Papers\nget Papers");
    world.clock.advance(60s);
    EXPECT_EQ(world.takeLog(), "") << "Papers is still read";
    run("closed Papers");
    world.clock.advance(1s);
    EXPECT_EQ(world.takeLog(), "close Papers");
    world.clock.advance(4s);
    host.layout(0, 1);
    world.clock.advance(4s);
    EXPECT_EQ(world.takeLog(), "") << "the host has just asked";
    world.clock.advance(1s);
    EXPECT_EQ(world.takeLog(), "close top");
    EXPECT_TRUE(world.top->itemArray().empty());
    EXPECT_EQ(world.clock.pendingCount(), 0U);
    EXPECT_EQ(run("clicked my__note"),
              "clicked my__note: update top, open top, close top, chose my_note with 0 popups\n");
}

TEST_F(MenuExporterTest, AClickOnAKeptRowActsOnTheSameRowOrNotAtAll)
{
    run("get top\nabout Papers\nget Papers\nabout Letters\nget Letters\nclosed top");
    world.clock.advance(1s);
    world.takeLog();
    const std::string click = "clicked dear";
    EXPECT_EQ(run(click),
              "clicked dear: update top, open top, update Papers, open Papers, update Letters, open Letters, "
              "close Letters, close Papers, close top, chose dear with 0 popups\n");
    const std::string nothing = "clicked dear: update top, open top, update Papers, open Papers, update Letters, "
                                "open Letters, close Letters, close Papers, close top\n";
    world.contents["Letters"] = "other";
    EXPECT_EQ(run(click), nothing);
    world.contents["Letters"] = "dear/";
    EXPECT_EQ(run(click), nothing);
}

TEST_F(MenuExporterTest, IdsFromBeforeARebuildAreUnknownAndNeverUsedAgain)
{
    run("get top\nabout Papers\nget Papers\nabout Letters\nget Letters");
    const int letters = host.id("Letters");
    const int dear = host.id("dear");
    world.contents["top"] = "New/, Papers/";
    world.contents["Papers"] = "a, dear";
    EXPECT_EQ(run("about top\nget top\nabout Papers\nget Papers"),
              "about top: true; r4 below 0; close Letters, close Papers, close top, update top, open top\n"
              "get top: 12 New, 3 Papers r4\n"
              "about Papers: true; r5 below 3; update Papers, open Papers\n"
              "get Papers: 13 Open Papers, 14 ---, 15 a, 16 dear r5\n");
    for (const int id : { letters, dear }) {
        EXPECT_EQ(host.layout(id, -1), kInvalid);
        EXPECT_EQ(host.tell(id, "clicked").errorName(), kInvalid);
        EXPECT_EQ(host.call("AboutToShow", { id }).errorName(), kInvalid);
    }
    EXPECT_EQ(host.takeUpdates(), QStringList());
    EXPECT_EQ(world.takeLog(), "");
}

TEST_F(MenuExporterTest, AGroupOfLevelsIsAnnouncedOnce)
{
    run("get top");
    const QDBusMessage group = host.call("AboutToShowGroup", { QVariant::fromValue(QList<int> { 3, 4, 99 }) });
    EXPECT_EQ(qdbus_cast<QList<int>>(group.arguments().value(0)), (QList<int> { 3, 4 }));
    EXPECT_EQ(qdbus_cast<QList<int>>(group.arguments().value(1)), QList<int> { 99 });
    EXPECT_EQ(host.takeUpdates(), QStringList { "r2 below 0" });
}

TEST_F(MenuExporterTest, AskingForTheWholeTreeListsNothing)
{
    world.contents["Papers"] = "entry*50000";
    world.contents["top"] = "Papers/, Places/";
    EXPECT_EQ(run("about top"), "about top: true; r2 below 0; update top, open top\n");
    EXPECT_EQ(host.layout(0, -1), "3 Papers, 5 Places");
    EXPECT_EQ(world.takeLog(), "");
    run("about Places");
    EXPECT_EQ(host.layout(0, -1), "3 Papers, 5 Places > (6 Open Places, 7 ---, 8 home, 9 root)");
    EXPECT_EQ(host.layout(0, 1), "3 Papers, 5 Places");
    EXPECT_EQ(host.layout(0, 1, { "enabled" }), "3 ---, 5 ---");
}

TEST_F(MenuExporterTest, ALongLevelGoesOnWithoutAnotherOpening)
{
    world.contents["Places"] = "n*650";
    run("get top\nabout Places");
    const QString dash = QString::fromUtf8(" \u2013 ");
    const QString last = QStringLiteral("More (n600") + dash + "n649)";
    const QString first = host.layout(host.id("Places"), 1);
    EXPECT_TRUE(first.endsWith("n199, 205 More (n200" + dash + "n399), 206 More (n400" + dash + "n599), 207 " + last));
    EXPECT_EQ(run("about " + last.toStdString()), "about " + last.toStdString() + ": true; r3 below 207\n");
    const QString rows = host.layout(207, -1);
    EXPECT_TRUE(rows.startsWith("208 n600, ")) << rows.toStdString();
    EXPECT_TRUE(rows.endsWith("257 n649")) << rows.toStdString();
    run("opened " + last.toStdString());
    EXPECT_EQ(run("clicked " + last.toStdString() + "\nclosed top\nclicked n649"),
              "clicked " + last.toStdString()
                  + ":\nclosed top:\nclicked n649: close Places, close top, chose n649 with 0 popups\n");
}

// More than what as many rows as a level has can go on with.
TEST_F(MenuExporterTest, EveryEntryOfAHugeDirectoryIsThreeLevelsAway)
{
    world.contents["Places"] = "n*50000";
    run("get top\nabout Places");
    host.layout(host.id("Places"), 1);
    run("about More (10000)");
    const QString rows = host.layout(host.id("More (10000)"), 1);
    EXPECT_EQ(rows.count(", ") + 1, 200 + 49) << rows.toStdString();
    EXPECT_TRUE(rows.section(", ", 199, 199).endsWith("n40199"));
    EXPECT_TRUE(rows.endsWith("n49999)")) << rows.right(80).toStdString();
}

TEST_F(MenuExporterTest, AnswersEveryQuestionAboutProperties)
{
    run("get top");
    EXPECT_EQ(properties({ 3, 99, 1 }, {}), (QStringList { "3 children-display label", "1 label" }));
    EXPECT_EQ(properties({}, { "type" }), (QStringList { "0 ", "1 ", "2 type", "3 ", "4 " }));
}

// The shell opens no empty submenu, and replaces a row whose children-display a layout brings again.
TEST_F(MenuExporterTest, GnomesShellGetsPlaceholdersAndChildrenDisplayAsAProperty)
{
    const QStringList names { "type", "children-display" };
    const int placeholder = placeholderId(3);
    EXPECT_EQ(host.layout(0, -1, names), "1 ---, 2 ---, 3 --- > (1073741827 ---), 4 --- > (1073741828 ---)");
    EXPECT_EQ(properties({ 3, placeholder }, {}),
              (QStringList { "3 children-display label", "1073741827 enabled label" }));
    const QDBusMessage layout = host.call("GetLayout", { 0, 1, names });
    for (const auto& row : qdbus_cast<DBusMenuLayout>(layout.arguments().value(1)).children)
        EXPECT_FALSE(row.properties.contains("children-display")) << row.id;
    EXPECT_EQ(host.tell(3, "opened").errorName(), "");
    EXPECT_EQ(host.takeUpdates(), QStringList { "r2 below 3" });
    EXPECT_EQ(host.call("AboutToShow", { 3 }).arguments().value(0), false) << "the signal has said it";
    EXPECT_EQ(host.layout(3, -1, names), "5 ---, 6 ---, 7 ---, 8 --- > (1073741832 ---)");
    EXPECT_EQ(host.tell(placeholder, "clicked").errorName(), kInvalid);
    MenuHost another(itemBus.connection().baseService(), kPath);
    EXPECT_EQ(another.layout(0, 1), "1 my__note, 2 ---, 3 Papers, 4 Places");
}

TEST_F(MenuExporterTest, PlasmaOpensALevelThatIsFullBehindANewRow)
{
    MenuExporter forPlasma(itemBus.connection(), "/Plasma", world.top, nullptr, "KDE");
    MenuHost plasma(itemBus.connection().baseService(), "/Plasma");
    const auto runOnPlasma = [&](const std::string& script) {
        return plasma.run(script, [this] { return world.takeLog(); });
    };
    forPlasma.fill();
    world.log.clear();
    const std::string beginning = R"(get top: 1 my__note, 2 ---, 3 Papers, 4 Places r1
about top: false; update top, open top
opened top:
about Papers: false; r2 below 0; update Papers, open Papers
get top: 1 my__note, 2 ---, 9 Papers, 4 Places r2; r3 below 9
get Papers: 5 Open Papers, 6 ---, 7 a, 8 Letters r3
about Papers: false
opened Papers:
about Letters: false; r4 below 9; update Letters, open Letters
)";
    EXPECT_EQ(runOnPlasma(beginning), beginning);
    const std::string again =
        R"(about Places: false; r5 below 0; close Letters, close Papers, update Places, open Places
about Papers: true; r6 below 9; close Places, update Papers, open Papers
)";
    EXPECT_EQ(runOnPlasma(again), again);
}

// The shell adds and removes rows, but does not move them.
TEST_F(MenuExporterTest, GnomesShellGetsNewRowsFromTheFirstOneThatIsInAnotherPlace)
{
    const QStringList names { "type", "children-display" };
    host.layout(0, -1, names);
    world.contents["top"] = "my_note, Papers/, -, Places//";
    run("about top");
    EXPECT_EQ(host.layout(0, 1, names), "1 ---, 5 ---, 6 ---, 7 ---");
}

// The shell would leave a long level no room between the rows of those above it.
TEST_F(MenuExporterTest, GnomesShellHidesWhatLiesBesideALongLevelWhileItIsOpen)
{
    world.contents["Papers"] = "n*100";
    host.layout(0, -1, { "type", "children-display" });
    host.layout(0, 1);
    MenuHost another(itemBus.connection().baseService(), kPath);
    EXPECT_EQ(run("opened top\nopened Places"),
              "opened top: update top, open top\n"
              "opened Places: r2 below 4; update Places, open Places\n");
    EXPECT_EQ(run("opened Papers"),
              "opened Papers: r3 below 3; hide 1; hide 2; hide 4; close Places, update Papers, "
              "open Papers\n");
    EXPECT_EQ(properties({ 3, 4 }, {}),
              (QStringList { "3 children-display label", "4 children-display label visible" }));
    EXPECT_EQ(run("closed Papers"), "closed Papers: show 1; show 2; show 4\n");
    EXPECT_EQ(another.takeUpdates(), (QStringList { "r2 below 4", "r3 below 3" }));
}

TEST(MenuHostKind, EveryHostShowsTheTitleThatWasMeant)
{
    for (const auto& [title, others, gnome] :
         std::initializer_list<std::array<QString, 3>> { { "my_file_name", "my__file__name", "my__file_name" },
                                                         { "_lead", "__lead", "__lead" },
                                                         { "tail_", "tail__", "tail_" },
                                                         { "a__b_c", "a____b__c", "a___b_c" },
                                                         { "___", "______", "___" },
                                                         { "plain", "plain", "plain" } }) {
        EXPECT_EQ(escapedLabel(title, MenuHostKind::standard), others);
        EXPECT_EQ(escapedLabel(title, MenuHostKind::gnomeShell), gnome);
    }
}

TEST_F(MenuExporterTest, TakesGroupsOfEventsAndIgnoresWhatMeansNothing)
{
    run("get top");
    EXPECT_EQ(host.tell(1, "hovered").errorName(), "");
    EXPECT_EQ(host.tell(2, "clicked").errorName(), "");
    const DBusMenuEventList events { { 77, "clicked", QDBusVariant(0), 0 },
                                     { 0, "opened", QDBusVariant(0), 0 },
                                     { 3, "opened", QDBusVariant(0), 0 },
                                     { 1, "clicked", QDBusVariant(0), 0 } };
    const QDBusMessage reply = host.call("EventGroup", { QVariant::fromValue(events) });
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int> { 77 });
    EXPECT_EQ(host.takeUpdates(), QStringList { "r2 below 3" });
    EXPECT_EQ(world.takeLog(),
              "update top, open top, update Papers, open Papers, close Papers, close top, "
              "chose my_note with 0 popups");
}

TEST_F(MenuExporterTest, WhileAnAlertRunsNothingOpens)
{
    run("get top\nabout top");
    world.takeLog();
    world.desktop.duringAlert = [this] {
        EXPECT_EQ(run("about top\nopened Papers\nabout Papers\nclicked my__note"),
                  "about top: false\nopened Papers:\nabout Papers: false\nclicked my__note:\n");
    };
    NSAlert().runModal();
    EXPECT_EQ(world.desktop.activations, 2);
    EXPECT_EQ(run("about top"), "about top: false; close top, update top, open top\n");
}

TEST_F(MenuExporterTest, AnActionMayBringTheHostBack)
{
    run("get top\nabout Papers\nget Papers");
    std::string again;
    world.duringAction = [&] { again = run("about Papers"); };
    EXPECT_EQ(run("clicked a"), "clicked a:\n");
    EXPECT_EQ(again,
              "about Papers: true; r3 below 3; close Papers, close top, chose a with 0 popups, update top, "
              "open top, update Papers, open Papers\n");
}

TEST_F(MenuExporterTest, TheShortMenuStandsInForAnEmptyOne)
{
    world.contents["top"] = "";
    const auto shortMenu = std::make_shared<NSMenu>("short");
    shortMenu->setItemArray(world.rows("Quit"));
    const MenuExporter other(itemBus.connection(), "/Other", world.top, shortMenu, {});
    MenuHost otherHost(itemBus.connection().baseService(), "/Other");
    const auto log = [this] { return world.takeLog(); };
    EXPECT_EQ(otherHost.run("get top\nabout top\nclicked Quit", log),
              "get top: 1 Quit r1; update top, open top, close top\n"
              "about top: false; update top, open top, close top\n"
              "clicked Quit: chose Quit with 0 popups\n");
}

} // namespace
