#include "MenuWorld.h"
#include "RecordingWorkspace.h"

#include <gtest/gtest.h>

#include <QApplication>

using namespace quillbox;

namespace {

bool leavesNothing(MenuWorld& world)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const QWidget* widget : QApplication::topLevelWidgets())
        if (dynamic_cast<const MenuPopup*>(widget))
            return false;
    return world.clock.pendingCount() == 0;
}

TEST(MenuWarmUp, HappensOnceAndLeavesNothingBehind)
{
    RecordingWorkspace workspace;
    MenuWorld world;
    for (int time = 0; time < 2; ++time) {
        world.presenter.warmUp();
        world.rest();
        EXPECT_TRUE(leavesNothing(world));
        EXPECT_EQ(workspace.iconsAsked, 11);
    }
    EXPECT_EQ(world.takeLog(), "");
}

TEST(MenuWarmUp, AClickInBetweenIsServedBeforeTheNextPieceAndEndsIt)
{
    RecordingWorkspace workspace;
    MenuWorld world { { { "top", "alpha" } } };
    world.presenter.warmUp();
    // The click waits in the queue when the first piece is done.
    const auto click = world.clock.after(std::chrono::milliseconds(300), [&] { world.open(); });
    world.rest();
    EXPECT_EQ(world.takeLog(), "update top, open top");
    EXPECT_EQ(PopupUser::popups().size(), 1);
    world.presenter.warmUp();
    world.rest();
    world.presenter.close();
    EXPECT_TRUE(leavesNothing(world));
    EXPECT_EQ(workspace.iconsAsked, 0);
}

} // namespace
