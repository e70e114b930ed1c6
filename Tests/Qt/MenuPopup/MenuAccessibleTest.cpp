#include "MenuAccessible.h"
#include "MenuWorld.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QWidget>

#include <algorithm>
#include <utility>

using namespace quillbox;

namespace {

using User = PopupUser;

// What a screen reader was told, in order; it looks at each object while it is told of it.
QStringList heard;

void hear(QAccessibleEvent* event)
{
    QAccessibleInterface* accessible = event->accessibleInterface();
    if (!accessible || !accessible->isValid())
        return;
    const QString name = accessible->text(QAccessible::Name);
    const QAccessible::State state = accessible->state();
    if (event->type() == QAccessible::PopupMenuStart)
        heard.append("start " + name);
    else if (event->type() == QAccessible::PopupMenuEnd)
        heard.append("end " + name);
    else if (event->type() == QAccessible::StateChanged)
        heard.append((state.expanded ? "expanded " : "collapsed ") + name);
    else if (event->type() == QAccessible::Focus)
        heard.append((accessible->role() == QAccessible::PopupMenu || state.focused ? "focus " : "no focus ") + name);
}

std::string takeHeard()
{
    return std::exchange(heard, {}).join(", ").toStdString();
}

class MenuAccessibleTest : public testing::Test {
protected:
    ~MenuAccessibleTest() override
    {
        world.presenter.close();
        heard.clear();
    }

    static QAccessibleInterface* level(std::size_t number)
    {
        return QAccessible::queryAccessibleInterface(User::popups()[number]);
    }
    void act(QAccessibleInterface* row, const QString& action)
    {
        row->actionInterface()->doAction(action);
        EXPECT_EQ(world.takeLog(), "") << "before the answer is on its way";
        QCoreApplication::sendPostedEvents();
    }

    MenuWorld world {
        { { "top", "alpha, Papers/, Recent//, (off)" }, { "Papers", "one, two" }, { "Recent", "r*50000" } },
        { [] { return true; }, hear }
    };
};

TEST_F(MenuAccessibleTest, TellsWhatHappensInTheOrderAScreenReaderNeeds)
{
    const auto expect = [](const char* told) { EXPECT_EQ(takeHeard(), told); };
    world.open();
    expect("start top, focus top");
    User::key(Qt::Key_Down);
    expect("focus alpha");
    User::type("p");
    User::key(Qt::Key_Right);
    expect("focus Papers, expanded Papers, start Papers, focus one");
    User::key(Qt::Key_Left);
    expect("end Papers, collapsed Papers, focus Papers");
    User::moveTo("alpha");
    expect("focus alpha");
    User::moveTo(QPoint(790, 790));
    expect("");
    User::moveTo("alpha");
    expect("focus alpha");
    world.hover("Papers");
    expect("focus Papers, expanded Papers, start Papers");
    User::click("two");
    expect("focus two, end Papers, end top");
}

TEST(MenuAccessibleSilence, NothingIsMadeWhileNobodyListens)
{
    MenuWorld world { { { "top", "f*3" } }, { [] { return false; }, hear } };
    // Ids are given in turn.
    const auto nextId = [] {
        QWidget widget;
        return QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&widget));
    };
    const QAccessible::Id before = nextId();
    world.open();
    User::key(Qt::Key_Down);
    world.presenter.close();
    EXPECT_EQ(takeHeard(), "");
    // The toolkit makes one for every window.
    EXPECT_EQ(nextId(), before + 2);
}

TEST_F(MenuAccessibleTest, ActionsDoWhatTheKeysDo)
{
    world.open();
    world.takeLog();
    act(level(0)->child(3), QAccessibleActionInterface::pressAction());
    act(level(0)->child(1), QAccessibleActionInterface::showMenuAction());
    EXPECT_EQ(User::selected(), "Papers/one");
    world.takeLog();
    act(level(0)->child(2), QAccessibleActionInterface::pressAction());
    EXPECT_EQ(User::selected(), "Recent/r0");
    world.takeLog();
    // Of two choices the second finds no menu any more.
    level(1)->child(7)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    level(1)->child(49'999)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    act(level(1)->child(8), QAccessibleActionInterface::pressAction());
    EXPECT_EQ(world.takeLog(), "off the screen, close Recent, close top, chose r49999 with 0 popups");
}

TEST_F(MenuAccessibleTest, AHugeListHasFewLiveRows)
{
    world.open();
    User::type("r");
    User::key(Qt::Key_Right);
    QAccessibleInterface* list = level(1);
    ASSERT_EQ(list->childCount(), 50'000);
    const QAccessible::Id focused = QAccessible::uniqueId(list->focusChild());
    std::vector<QAccessible::Id> ids;
    for (int i = 0; i < list->childCount(); ++i) {
        QAccessibleInterface* row = list->child(i);
        ids.push_back(QAccessible::uniqueId(row));
        ASSERT_EQ(list->indexOfChild(row), i);
    }
    const auto live = [&ids] {
        return static_cast<std::size_t>(std::count_if(ids.begin(), ids.end(), [](QAccessible::Id id) {
            return QAccessible::accessibleInterface(id) != nullptr;
        }));
    };
    EXPECT_EQ(live(), MenuAccessibleRows::kMost);
    EXPECT_EQ(QAccessible::accessibleInterface(focused), list->focusChild());
    world.presenter.close();
    EXPECT_EQ(live(), 0u);
}

} // namespace
