#include "WindowWorld.h"

#include "DragPicture.h"
#include "RowDrag.h"
#include "TableViewWidget.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QWindow>

using namespace quillbox;

namespace {

// A drag as the toolkit tells it to the window: at each of these heights of the table, then let go.
std::string drag(WindowWorld& world, const QMimeData& data, const std::vector<double>& heights,
                 Qt::DropActions offered = Qt::CopyAction)
{
    QWidget* window = world.widget();
    const QPointF top = world.find<TableViewWidget>()->mapTo(window, QPointF(30, 0));
    std::string actions;
    for (std::size_t step = 0; step <= heights.size(); ++step) {
        const bool isDrop = step == heights.size();
        const QPointF at = top + QPointF(0, isDrop ? heights.back() : heights[step]);
        const auto type = isDrop ? QEvent::Drop : step == 0 ? QEvent::DragEnter : QEvent::DragMove;
        std::unique_ptr<QDropEvent> event;
        if (isDrop)
            event = std::make_unique<QDropEvent>(at, offered, &data, Qt::LeftButton, Qt::NoModifier);
        else if (step == 0)
            event = std::make_unique<QDragEnterEvent>(at.toPoint(), offered, &data, Qt::LeftButton, Qt::NoModifier);
        else
            event =
                std::make_unique<QDragMoveEvent>(at.toPoint(), offered, &data, Qt::LeftButton, Qt::NoModifier, type);
        QApplication::sendEvent(window, event.get());
        if (event->dropAction() != Qt::IgnoreAction && event->isAccepted())
            actions += event->dropAction() == Qt::CopyAction ? "c" : event->dropAction() == Qt::LinkAction ? "l" : "?";
        else
            actions += "-";
    }
    WindowWorld::settle();
    return actions + ": " + world.takeLog();
}

TEST(WindowPresenter, DragsReachTheTableWithTheRowBelowTheirGap)
{
    WindowWorld world;
    const double row = world.table->rowHeight();
    world.table->selectRowIndexes({ 1, 3 }, false);
    RowDrag own(*world.table->beginDragging(3), NSDragOperation::copy);
    EXPECT_TRUE(RowDrag(own.tracking()->pasteboard(), NSDragOperation::none).formats().isEmpty());
    std::vector<NSDragOperation> shown;
    own.setOperationHandler([&](NSDragOperation operation) { shown.push_back(operation); });
    EXPECT_EQ(own.text(), "row 1\nrow 3");
    EXPECT_EQ(own.formats(), QStringList { "text/plain" });
    EXPECT_EQ(drag(world, own, { 0, 2.4 * row, 4.6 * row }), "-ccc: over 0, over 2, over 5, over 5, drop 1 3 above 5");
    EXPECT_EQ(shown.front(), NSDragOperation::none);
    EXPECT_EQ(shown.back(), NSDragOperation::move);

    QMimeData files;
    files.setData("text/uri-list", "# two\r\nfile:///a%20b\r\nhttp://c/\r\nfile:///%FF\r\n");
    EXPECT_EQ(drag(world, files, { 2 * row }), "cc: over 2, over 2, drop file:///a%20b file:///%FF above 2");

    // Rows of another program's drag mean nothing.
    QMimeData others;
    others.setText("row 1");
    others.setData("row", "1");
    EXPECT_EQ(drag(world, others, { 2 * row }), "--: ");
}

TEST(WindowPresenter, ADragNearTheEdgeScrolls)
{
    WindowWorld world(100);
    QMimeData files;
    files.setData("text/uri-list", "file:///a");
    const NSClipView& clip = *world.scrollView->contentView();
    QWidget* window = world.widget();
    const QPoint low =
        world.find<TableViewWidget>()->mapTo(window, QPoint(30, static_cast<int>(clip.bounds().size.height) - 2));
    QDragEnterEvent enter(low, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window, &enter);
    for (int step = 0; step < 10; ++step)
        world.clock.advance(std::chrono::milliseconds(50));
    EXPECT_GT(clip.bounds().minY(), 2 * world.table->rowHeight());
    EXPECT_GT(world.table->dropRow().value_or(0), 8);
    QDragLeaveEvent leave;
    QApplication::sendEvent(window, &leave);
    const double stopped = clip.bounds().minY();
    world.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(clip.bounds().minY(), stopped);
    EXPECT_FALSE(world.table->dropRow());
}

// Counts how often its data is asked for.
class CountingFiles final : public QMimeData {
public:
    explicit CountingFiles(QByteArray list) : list_(std::move(list)) { }
    QStringList formats() const override { return { QStringLiteral("text/uri-list") }; }
    bool hasFormat(const QString& format) const override { return formats().contains(format); }

    mutable int count = 0;

protected:
    QVariant retrieveData(const QString&, QMetaType) const override
    {
        ++count;
        return list_;
    }

private:
    QByteArray list_;
};

TEST(DragDestination, AsksForTheDataOnceAtTheDropAndOfWhoeverDropsThen)
{
    WindowWorld world;
    const double row = world.table->rowHeight();
    const CountingFiles dead("file:///dead");
    QWidget* window = world.widget();
    QDragEnterEvent enter(world.find<TableViewWidget>()->mapTo(window, QPoint(30, 60)), Qt::CopyAction, &dead,
                          Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window, &enter);
    EXPECT_TRUE(world.table->dropRow());
    world.takeLog();
    // Its program ends without a word, and another one's drag goes on in its place.
    const CountingFiles next("file:///next");
    EXPECT_EQ(drag(world, next, { 2 * row, 3 * row }), "ccc: over 2, over 3, over 3, drop file:///next above 3");
    EXPECT_EQ(dead.count, 0);
    EXPECT_EQ(next.count, 1);

    // Or the pointer is free again.
    QApplication::sendEvent(window, &enter);
    EXPECT_TRUE(world.table->dropRow());
    QMouseEvent moved(QEvent::MouseMove, QPointF(), QPointF(), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(window->windowHandle(), &moved);
    EXPECT_FALSE(world.table->dropRow());
}

TEST(DragDestination, NeverAnswersWithAMove)
{
    WindowWorld world;
    const double row = world.table->rowHeight();
    QMimeData files;
    files.setData("text/uri-list", "file:///a");
    struct Case {
        Qt::DropActions offered;
        const char* answers;
    };
    for (const Case& c : { Case { Qt::MoveAction, "--: " },
                           Case { Qt::MoveAction | Qt::CopyAction, "cc: over 2, over 2, drop file:///a above 2" },
                           Case { Qt::MoveAction | Qt::LinkAction, "ll: over 2, over 2, drop file:///a above 2" } })
        EXPECT_EQ(drag(world, files, { 2 * row }, c.offered), c.answers) << c.offered;
}

TEST(DragDestination, WhatScrollsUnderAStillPointerMayComeToTakeTheDrop)
{
    WindowWorld world(100);
    QMimeData files;
    files.setData("text/uri-list", "file:///a");
    const auto answerAtTop = [&] {
        const QPoint top = world.find<TableViewWidget>()->parentWidget()->mapTo(world.widget(), QPoint(30, 4));
        QDragEnterEvent enter(top, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(world.widget(), &enter);
        return enter.dropAction();
    };
    // Nothing goes above row 0. While the list scrolls there, the answer can't be no: it would stay so.
    world.scrollView->contentView()->scroll(5);
    WindowWorld::settle();
    EXPECT_EQ(answerAtTop(), Qt::CopyAction);
    world.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(world.scrollView->contentView()->bounds().minY(), 0);
    EXPECT_EQ(answerAtTop(), Qt::IgnoreAction);
}

TEST(DragPicture, ShowsTheFirstRowsDraggedAndTheirNumber)
{
    WindowWorld world(2000);
    const auto inkOf = [&](const std::set<int>& rows, int pressed) {
        world.table->selectRowIndexes(rows, false);
        WindowWorld::settle();
        EXPECT_TRUE(world.table->beginDragging(pressed));
        return DragPicture(*world.find<TableViewWidget>(), *world.table, pressed);
    };
    // Rows out of sight look as they do in sight.
    const QImage inSight = inkOf({ 3 }, 3).pixmap().toImage();
    world.scrollView->contentView()->scroll(1e6);
    WindowWorld::settle();
    EXPECT_EQ(inkOf({ 3 }, 3).pixmap().toImage(), inSight);
    const DragPicture two = inkOf({ 3, 1999 }, 1999);
    const int row = static_cast<int>(world.table->rowHeight());
    EXPECT_EQ(two.pixmap().height(), 2 * row);
    EXPECT_EQ(two.topOfPressedRow(), row);
    const QImage first = two.pixmap().toImage().copy(inSight.rect());
    EXPECT_NE(first, inSight) << "without the number";
    EXPECT_EQ(first.copy(0, 0, first.width() / 2, row), inSight.copy(0, 0, first.width() / 2, row));
    world.table->selectAll();
    WindowWorld::settle();
    EXPECT_TRUE(world.table->beginDragging(1999));
    EXPECT_EQ(DragPicture(*world.find<TableViewWidget>(), *world.table, 1999).topOfPressedRow(), 11 * row);
}

} // namespace
