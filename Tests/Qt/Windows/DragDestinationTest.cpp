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

// Files of another program; counts how often they are asked for.
class Files final : public QMimeData {
public:
    explicit Files(QByteArray list) : list_(std::move(list)) { }
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

// Tells the window of a drag as the toolkit does, at that height of the table; what it answers: c for a copy, l for a
// link, - for no.
template <class Event>
char tell(WindowWorld& world, const QMimeData& data, double height, Qt::DropActions offered = Qt::CopyAction)
{
    const QPoint at = world.find<TableViewWidget>()->mapTo(world.widget(), QPoint(30, static_cast<int>(height)));
    Event event(at, offered, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(world.widget(), &event);
    if (!event.isAccepted() || event.dropAction() == Qt::IgnoreAction)
        return '-';
    return event.dropAction() == Qt::CopyAction ? 'c' : event.dropAction() == Qt::LinkAction ? 'l' : '?';
}

// A drag over these heights of the table, and dropped at the last one: the answers, and what the table heard.
std::string drag(WindowWorld& world, const QMimeData& data, const std::vector<double>& heights,
                 Qt::DropActions offered = Qt::CopyAction)
{
    std::string answers(1, tell<QDragEnterEvent>(world, data, heights.front(), offered));
    for (std::size_t step = 1; step < heights.size(); ++step)
        answers += tell<QDragMoveEvent>(world, data, heights[step], offered);
    answers += tell<QDropEvent>(world, data, heights.back(), offered);
    WindowWorld::settle();
    return answers + ": " + world.takeLog();
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

    const Files files("# two\r\nfile:///a%20b\r\nhttp://c/\r\nfile:///%FF\r\n");
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
    const Files files("file:///a");
    const NSClipView& clip = *world.scrollView->contentView();
    tell<QDragEnterEvent>(world, files, clip.bounds().size.height - 2);
    for (int step = 0; step < 10; ++step)
        world.clock.advance(std::chrono::milliseconds(50));
    EXPECT_GT(clip.bounds().minY(), 2 * world.table->rowHeight());
    EXPECT_GT(world.table->dropRow().value_or(0), 8);
    QDragLeaveEvent leave;
    QApplication::sendEvent(world.widget(), &leave);
    const double stopped = clip.bounds().minY();
    world.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(clip.bounds().minY(), stopped);
    EXPECT_FALSE(world.table->dropRow());
}

TEST(DragDestination, AsksForTheDataOnceAtTheDropAndOfWhoeverDropsThen)
{
    WindowWorld world;
    const double row = world.table->rowHeight();
    const Files dead("file:///dead");
    tell<QDragEnterEvent>(world, dead, 60);
    EXPECT_TRUE(world.table->dropRow());
    world.takeLog();
    // Its program ends without a word, and another one's drag goes on in its place.
    const Files next("file:///next");
    EXPECT_EQ(drag(world, next, { 2 * row, 3 * row }), "ccc: over 2, over 3, over 3, drop file:///next above 3");
    EXPECT_EQ(dead.count, 0);
    EXPECT_EQ(next.count, 1);

    // Or the pointer is free again.
    tell<QDragEnterEvent>(world, dead, 60);
    EXPECT_TRUE(world.table->dropRow());
    QMouseEvent moved(QEvent::MouseMove, QPointF(), QPointF(), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(world.widget()->windowHandle(), &moved);
    EXPECT_FALSE(world.table->dropRow());
}

TEST(DragDestination, NeverAnswersWithAMove)
{
    WindowWorld world;
    const double row = world.table->rowHeight();
    const Files files("file:///a");
    const std::string taken = ": over 2, over 2, drop file:///a above 2";
    EXPECT_EQ(drag(world, files, { 2 * row }, Qt::MoveAction), "--: ");
    EXPECT_EQ(drag(world, files, { 2 * row }, Qt::MoveAction | Qt::CopyAction), "cc" + taken);
    EXPECT_EQ(drag(world, files, { 2 * row }, Qt::MoveAction | Qt::LinkAction), "ll" + taken);
}

TEST(DragDestination, WhatScrollsUnderAStillPointerMayComeToTakeTheDrop)
{
    WindowWorld world(100);
    const Files files("file:///a");
    const NSClipView& clip = *world.scrollView->contentView();
    const auto answerAtTop = [&] { return tell<QDragEnterEvent>(world, files, clip.bounds().minY() + 4); };
    // Nothing goes above row 0. While the list scrolls there, the answer can't be no: it would stay so.
    world.scrollView->contentView()->scroll(5);
    WindowWorld::settle();
    EXPECT_EQ(answerAtTop(), 'c');
    world.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(clip.bounds().minY(), 0);
    EXPECT_EQ(answerAtTop(), '-');
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
