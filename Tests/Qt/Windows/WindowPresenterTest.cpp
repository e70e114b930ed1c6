#include "WindowWorld.h"

#include "CheckBox.h"
#include "KeyViewLoop.h"
#include "Palettes.h"
#include "ScrollViewPresenter.h"
#include "SelectableText.h"
#include "ShownText.h"
#include "TableViewWidget.h"
#include "TextLabel.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QWheelEvent>

using namespace quillbox;

namespace {

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

// Along the way of the Tab key, from top to bottom.
TEST(WindowPresenter, ReturnPressesTheFocusedButtonElseTheDefaultOne)
{
    WindowWorld world;
    std::string way;
    for (QWidget* widget : keyWidgets(*world.widget())) {
        widget->setFocus();
        WindowWorld::key(*world.widget(), Qt::Key_Return);
        WindowWorld::key(*world.widget(), Qt::Key_Escape);
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const char* kind = dynamic_cast<const TableViewWidget*>(widget) ? "table" : "field";
        way += (button ? button->text().toStdString() : kind) + ": " + world.takeLog() + "\n";
    }
    EXPECT_EQ(way,
              "field: Apply, Cancel\n"
              "Check && see: Apply, Cancel\n"
              "table: Apply, Cancel\n"
              "Cancel: Cancel, Cancel\n"
              "Apply: Apply, Cancel\n");
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

    EXPECT_TRUE(QAccessible::queryAccessibleInterface(shown)->state().modal);
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(window)->state().modal);
    // What an assistive technology puts into a field below it stays out of the model and is not shown.
    auto* field = world.find<QLineEdit>();
    QAccessible::queryAccessibleInterface(field)->setText(QAccessible::Value, "too late");
    WindowWorld::settle();
    EXPECT_EQ(world.field->stringValue(), "name");
    EXPECT_EQ(field->text(), "name");
    WindowWorld::key(*shown, Qt::Key_Escape);
    shown->setFocus();
    WindowWorld::key(*shown, Qt::Key_Return);
    EXPECT_EQ(world.takeLog(), "Discard, Use");
    // What is under the pointer anywhere on the window takes no click, and keys go on to the sheet.
    const QPoint apply = world.button("Apply")->geometry().center();
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
    // The window may close in the action.
    world.duringAction = [&] { world.window.lock()->close(); };
    WindowWorld::click(*window->childAt(apply));
    EXPECT_EQ(world.takeLog(), "Apply");
    EXPECT_FALSE(world.widget());
    EXPECT_TRUE(world.window.expired());
}

TEST(WindowPresenter, TheWindowGrowsWithinItsLimitsAndFollowsTheFont)
{
    WindowWorld world;
    QWidget* window = world.widget();
    window->resize(500, 5000);
    WindowWorld::settle();
    EXPECT_EQ(world.window.lock()->contentSize(), (NSSize { WindowWorld::kWidth, WindowWorld::kHeight + 300 }));

    const double before = world.table->rowHeight();
    const QFont font = QApplication::font();
    QFont larger = font;
    larger.setPixelSize(40);
    QApplication::setFont(larger);
    WindowWorld::settle();
    EXPECT_GT(world.table->rowHeight(), before);
    EXPECT_EQ(world.desktop.windows().fontSize(), 40);
    EXPECT_EQ(world.find<TableViewWidget>()->rowWidget(1)->height(), world.table->rowHeight());
    QApplication::setFont(font);
}

TEST(SelectableText, ReflowsTheParagraphsThatHaveToWrap)
{
    SelectableText text(nullptr);
    text.show();
    const QString short1 = QStringLiteral("one\ntwo\n\n");
    const QString long1 = QStringLiteral("three words or\nfour");
    text.showText(AttributedString((short1 + long1).toStdString()), true);
    const int width = text.fontMetrics().horizontalAdvance(QStringLiteral("three words"));
    text.resize(width, 200);
    EXPECT_EQ(text.toPlainText(), short1 + QString(long1).replace('\n', ' '));
    ShownText measured(AttributedString((short1 + long1).toStdString()), text.font(), false);
    const double whole = measured.size(width + 5).height;
    measured.setReflowsParagraphs(true);
    EXPECT_LT(measured.size(width + 5).height, whole);
    text.resize(10 * width, 200);
    EXPECT_EQ(text.toPlainText(), short1 + long1);
}

TEST(CheckBox, CanBeSeenOnEveryBackgroundAndWraps)
{
    for (const QColor& background : { QColor(42, 46, 50), QColor(246, 245, 244), QColor(Qt::black) }) {
        CheckBox box;
        box.setPalette(QPalette(background, background));
        box.resize(box.sizeHint());
        const QImage image = box.grab().toImage();
        double most = 0;
        for (int x = 0; x < image.width(); ++x)
            most = std::max(most, contrast(image.pixelColor(x, image.height() / 2), background));
        EXPECT_GE(most, 2.5) << background.name().toStdString();
    }
    CheckBox box;
    box.showTitle(QStringLiteral("a title of some words"));
    const QSize whole = box.sizeWithin(kNoWidthLimit);
    const QSize wrapped = box.sizeWithin(whole.width() - 20);
    EXPECT_GT(wrapped.height(), whole.height());
    EXPECT_EQ(box.sizeWithin(whole.width()), whole);
}

TEST(ScrollView, AtItsEndTheWheelGoesOnToWhatIsAroundIt)
{
    WindowWorld world(50);
    auto* list = world.find<ScrollViewWidget>();
    const auto isTaken = [&](int angle) {
        QWheelEvent wheel({ 5, 5 }, list->mapToGlobal(QPointF(5, 5)), {}, { 0, angle }, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(list, &wheel);
        return wheel.isAccepted();
    };
    EXPECT_FALSE(isTaken(120));
    EXPECT_TRUE(isTaken(-120000));
    EXPECT_FALSE(isTaken(-120));
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

TEST(RowSlide, RowsAreSeenOnTheirWayAndEndInTheirPlaces)
{
    WindowWorld world(6);
    auto* area = world.find<TableViewWidget>();
    const int row = static_cast<int>(world.table->rowHeight());
    QWidget* const moved = area->rowWidget(1);
    QWidget* const below = area->rowWidget(3);
    world.table->selectRowIndexes({ 1 }, false);
    // Row 1 goes below row 4, and a new one comes before the last.
    world.table->rearrangeRows({ 0, 4, 1, 2, 3, 6 }, 7, NSTableView::Animation::gap);
    WindowWorld::settle();
    EXPECT_EQ(area->rowWidget(4), moved) << "a row keeps its widget";
    EXPECT_EQ(moved->y(), row);
    EXPECT_EQ(below->y(), 3 * row);
    world.clock.advance(std::chrono::milliseconds(100));
    EXPECT_GT(moved->y(), row);
    EXPECT_LT(moved->y(), 4 * row);
    EXPECT_LT(below->y(), 3 * row);
    world.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(moved->y(), 4 * row);
    EXPECT_EQ(below->y(), 2 * row);
    EXPECT_EQ(area->rowWidget(6)->y(), 6 * row);
    EXPECT_EQ(world.clock.pendingCount(), 0U);
    EXPECT_EQ(world.table->leadRow(), 4);

    // Rows go while others are on their way; nothing stays behind.
    world.table->rearrangeRows({ 0, 1, -1, 2, -1, -1, 3 }, 4, NSTableView::Animation::slideUp);
    WindowWorld::settle();
    world.clock.advance(std::chrono::milliseconds(50));
    world.table->rearrangeRows({ 2, 1, 0, -1 }, 3, NSTableView::Animation::gap);
    WindowWorld::settle();
    world.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(area->findChildren<QWidget*>(Qt::FindDirectChildrenOnly).size(), 3);
    for (int each = 0; each < 3; ++each) {
        EXPECT_EQ(area->rowWidget(each)->y(), each * row);
        EXPECT_EQ(WindowWorld::findIn<TextLabel>(*area->rowWidget(each))->text(),
                  QStringList({ "row 4", "row 2", "row 0" })[each]);
    }
}

} // namespace
