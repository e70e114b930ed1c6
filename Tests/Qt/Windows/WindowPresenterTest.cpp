#include "WindowWorld.h"

#include "KeyViewLoop.h"
#include "RowDrag.h"
#include "SelectableText.h"
#include "ShownText.h"
#include "TableViewWidget.h"
#include "TextLabel.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

using namespace quillbox;

namespace {

QPushButton* buttonOf(QWidget& window, const QString& text)
{
    for (auto* button : window.findChildren<QPushButton*>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

TEST(WindowPresenter, AClickSendsTheActionInWhichTheWindowMayClose)
{
    WindowWorld world;
    world.duringAction = [&] { world.window.lock()->close(); };
    WindowWorld::click(*buttonOf(*world.widget(), "Apply"));
    EXPECT_EQ(world.takeLog(), "Apply");
    EXPECT_FALSE(world.widget());
    EXPECT_TRUE(world.window.expired());
}

TEST(WindowPresenter, WhatIsTypedAndCheckedReachesTheModel)
{
    WindowWorld world;
    auto* line = world.find<QLineEdit>();
    // The first field to fill in has the keyboard, its text selected.
    EXPECT_EQ(world.widget()->focusWidget(), line);
    WindowWorld::key(*world.widget(), Qt::Key_A, QStringLiteral("ä"));
    EXPECT_EQ(world.field->stringValue(), "ä");
    line->undo();
    EXPECT_EQ(line->text(), "name");

    auto* box = world.find<QCheckBox>();
    EXPECT_EQ(box->text(), "Check && see");
    WindowWorld::click(*box);
    EXPECT_TRUE(world.checkbox->isOn());
    world.checkbox->setOn(false);
    WindowWorld::settle();
    EXPECT_FALSE(box->isChecked());
}

TEST(WindowPresenter, TheCaretGoesToThePlaceInBytes)
{
    WindowWorld world;
    world.field->setStringValue("äöü");
    world.table->selectAll();
    world.field->selectText();
    world.field->currentEditor()->setSelectedRange({ 4, 0 });
    WindowWorld::settle();
    const auto* line = world.find<QLineEdit>();
    EXPECT_EQ(line->cursorPosition(), 2);
    EXPECT_FALSE(line->hasSelectedText());
}

TEST(WindowPresenter, ReturnAndEscapePressTheirButtonsWhereverTheKeyboardIs)
{
    WindowWorld world;
    for (QWidget* widget : keyWidgets(*world.widget())) {
        widget->setFocus();
        WindowWorld::key(*world.widget(), Qt::Key_Return);
        WindowWorld::key(*world.widget(), Qt::Key_Escape);
        EXPECT_EQ(world.takeLog(), "Apply, Cancel") << widget->metaObject()->className();
    }
}

TEST(WindowPresenter, TabGoesFromTopToBottom)
{
    WindowWorld world;
    QStringList order;
    for (const QWidget* widget : keyWidgets(*world.widget())) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        order.append(button ? button->text() : dynamic_cast<const TableViewWidget*>(widget) ? "table" : "field");
    }
    EXPECT_EQ(order.join(", "), "field, Check && see, table, Cancel, Apply");
}

TEST(WindowPresenter, OnlyRowsInSightHaveWidgets)
{
    WindowWorld world(2000);
    auto* area = world.find<TableViewWidget>();
    const auto* scroller = world.find<QScrollBar>();
    const auto mostInSight = static_cast<qsizetype>(200 / world.table->rowHeight()) + 2;
    for (const int value : { 0, 333, scroller->maximum() / 2, scroller->maximum() }) {
        world.find<QScrollBar>()->setValue(value);
        WindowWorld::settle();
        EXPECT_LE(area->findChildren<QWidget*>(Qt::FindDirectChildrenOnly).size(), mostInSight);
    }
    EXPECT_TRUE(area->rowWidget(1999));
    EXPECT_FALSE(area->rowWidget(0));

    // A reader hears of all of them, by name, without their being shown.
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(area);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->childCount(), 2000);
    for (const int row : { 7, 1999 }) {
        QAccessibleInterface* child = list->child(row);
        EXPECT_EQ(child->text(QAccessible::Name), QStringLiteral("row %1").arg(row));
        EXPECT_EQ(child->state().offscreen, row == 7);
        EXPECT_EQ(list->indexOfChild(child), row);
        child->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        EXPECT_TRUE(child->state().selected);
    }
}

// A drag as the toolkit tells it to the window: at each of these heights of the table, then let go.
std::string drag(WindowWorld& world, const QMimeData& data, const std::vector<double>& heights)
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
            event = std::make_unique<QDropEvent>(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        else if (step == 0)
            event =
                std::make_unique<QDragEnterEvent>(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        else
            event = std::make_unique<QDragMoveEvent>(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton,
                                                     Qt::NoModifier, type);
        QApplication::sendEvent(window, event.get());
        if (event->dropAction() != Qt::IgnoreAction && event->isAccepted())
            actions += event->dropAction() == Qt::CopyAction ? "c" : "?";
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
    EXPECT_EQ(shown, (std::vector { NSDragOperation::none, NSDragOperation::move, NSDragOperation::move }));

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

QWidget* sheetOn(const QWidget& window)
{
    for (auto* below : window.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (below->isWindow() && below->isVisible())
            return below;
    }
    return nullptr;
}

TEST(WindowPresenter, ASheetTakesTheKeysAndHoldsItsWindow)
{
    WindowWorld world;
    const auto sheet = world.beginSheet();
    QWidget* window = world.widget();
    QWidget* const shown = sheetOn(*window);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->windowType(), Qt::Dialog);
    EXPECT_EQ(shown->size(), QSize(200, 120));
    EXPECT_EQ(shown->minimumSize(), shown->maximumSize());
    EXPECT_FALSE(shown->windowFlags() & Qt::WindowCloseButtonHint);

    WindowWorld::key(*shown, Qt::Key_Escape);
    WindowWorld::key(*shown, Qt::Key_Return);
    EXPECT_EQ(world.takeLog(), "Discard, Use");
    // What is under the pointer anywhere on the window takes no click, and keys go on to the sheet.
    const QPoint apply = buttonOf(*window, "Apply")->geometry().center();
    WindowWorld::click(*window->childAt(apply));
    WindowWorld::key(*window, Qt::Key_Return);
    EXPECT_EQ(world.takeLog(), "Use");
    for (QWidget* closed : { shown, window }) {
        QCloseEvent event;
        QApplication::sendEvent(closed, &event);
        EXPECT_FALSE(event.isAccepted());
    }
    EXPECT_TRUE(shown->isVisible());
    world.window.lock()->endSheet(sheet, NSModalResponseOK);
    WindowWorld::settle();
    EXPECT_EQ(world.takeLog(), "ended 1");
    EXPECT_FALSE(sheetOn(*window));
    WindowWorld::click(*window->childAt(apply));
    EXPECT_EQ(world.takeLog(), "Apply");
    QCloseEvent event;
    QApplication::sendEvent(window, &event);
    WindowWorld::settle();
    EXPECT_TRUE(world.window.expired());
}

TEST(WindowPresenter, TheWindowGrowsWithinItsLimitsAndFollowsTheFont)
{
    WindowWorld world;
    QWidget* window = world.widget();
    window->resize(500, 5000);
    WindowWorld::settle();
    EXPECT_EQ(world.window.lock()->contentSize(), (NSSize { WindowWorld::kWidth, WindowWorld::kHeight + 400 }));

    const double before = world.table->rowHeight();
    const QFont font = QApplication::font();
    QFont larger = font;
    larger.setPixelSize(40);
    QApplication::setFont(larger);
    WindowWorld::settle();
    EXPECT_GT(world.table->rowHeight(), before);
    EXPECT_EQ(world.find<TableViewWidget>()->rowWidget(1)->height(), world.table->rowHeight());
    QApplication::setFont(font);
}

TEST(ShownText, FitsIntoTheSizeThatItWants)
{
    const std::string texts[] = { "Drag",
                                  "a longer text, with words that wrap",
                                  "two\nlines",
                                  "",
                                  "⬅",
                                  "⚠️ sign",
                                  "/a/very/long/path/without/any/place/to/break/it/at/all",
                                  "WAVE fi" };
    for (const double size : { 0.0, 9.0, 13.0, 24.0, 38.0 }) {
        QFont font = QApplication::font();
        if (size > 0)
            font.setPixelSize(static_cast<int>(size));
        for (const std::string& text : texts) {
            for (const double limit : { kNoWidthLimit, 200.0, 90.5 }) {
                ShownText shown((AttributedString(text)), font, false);
                const NSSize wanted = shown.size(limit);
                EXPECT_LE(wanted.width, limit);
                // Within its own width it needs no more height than before.
                EXPECT_EQ(shown.size(wanted.width).height, wanted.height) << text << ' ' << size << ' ' << limit;
            }
        }
    }
}

} // namespace
