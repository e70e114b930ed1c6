#include "HeadlessDesktop.h"

#include "NSScrollView.h"
#include "NSTableView.h"
#include "NSWindow.h"

#include <gtest/gtest.h>

#include <numeric>
#include <sstream>

namespace quillbox {

namespace {

    using Key = NSTableView::Key;

    // A list of numbers in a window ten rows high, of which every fifth can't be selected.
    class Numbers final : public NSTableViewDataSource, public NSTableViewDelegate {
    public:
        int numberOfRows(NSTableView&) override { return count; }
        std::shared_ptr<NSView> viewForRow(NSTableView&, int) override
        {
            ++viewsMade;
            return std::make_shared<NSView>();
        }
        bool shouldSelectRow(NSTableView&, int row) override { return row % 5 != 0; }

        int count = 0;
        int viewsMade = 0;
    };

    class NumberedTable {
    public:
        explicit NumberedTable(int count)
        {
            numbers->count = count;
            table->setDataSource(numbers);
            table->setDelegate(numbers);
            table->setAllowsMultipleSelection(true);
            scrollView->setDocumentView(table);
            const auto controller = std::make_shared<NSViewController>();
            controller->setView(scrollView);
            scrollView->setFrameSize({ 100, 10 * table->rowHeight() });
            window = NSWindow::create(controller);
            window->layoutIfNeeded();
        }

        std::string selection() const
        {
            std::ostringstream text;
            for (const int row : table->selectedRowIndexes())
                text << row << ' ';
            return text.str();
        }
        // The first and the last row in sight.
        std::pair<int, int> inSight() const
        {
            return { table->visibleRowViews().begin()->first, table->visibleRowViews().rbegin()->first };
        }

        HeadlessDesktop desktop;
        std::shared_ptr<Numbers> numbers = std::make_shared<Numbers>();
        std::shared_ptr<NSTableView> table = std::make_shared<NSTableView>();
        std::shared_ptr<NSScrollView> scrollView = NSScrollView::create();
        std::shared_ptr<NSWindow> window;
    };

    TEST(TableView, OnlyRowsInSightHaveViews)
    {
        NumberedTable list(2000);
        EXPECT_EQ(list.inSight(), std::pair(0, 9));
        EXPECT_EQ(list.numbers->viewsMade, 10);
        const double height = list.table->rowHeight();
        list.scrollView->contentView()->scroll(100.5 * height);
        EXPECT_EQ(list.inSight(), std::pair(100, 110));
        EXPECT_EQ(list.table->subviews().size(), 11U);
        list.scrollView->contentView()->scroll(1e9);
        EXPECT_EQ(list.inSight(), std::pair(1990, 1999));
        // Rows below the sight go: the list is scrolled back to its new end.
        list.numbers->count = 500;
        std::vector<int> newRows(2000, -1);
        std::iota(newRows.begin(), newRows.begin() + 500, 0);
        list.table->rearrangeRows(newRows, 500, NSTableView::Animation::slideUp);
        list.window->layoutIfNeeded();
        EXPECT_EQ(list.inSight(), std::pair(490, 499));
        EXPECT_LT(list.numbers->viewsMade, 60);
    }

    TEST(TableView, SelectsAsPeopleExpect)
    {
        struct Step {
            const char* name;
            std::function<void(NSTableView&)> act;
            const char* selected;
        };
        NumberedTable list(20);
        for (const Step& step : {
                 Step { "a click", [](NSTableView& t) { t.mouseDown(3, false, false); }, "3 " },
                 Step { "a row that can't be selected", [](NSTableView& t) { t.mouseDown(5, false, false); }, "3 " },
                 Step { "Shift and a click", [](NSTableView& t) { t.mouseDown(7, true, false); }, "3 4 6 7 " },
                 Step { "Shift the other way", [](NSTableView& t) { t.mouseDown(1, true, false); }, "1 2 3 " },
                 Step { "Ctrl adds", [](NSTableView& t) { t.mouseDown(12, false, true); }, "1 2 3 12 " },
                 Step { "Ctrl takes away", [](NSTableView& t) { t.mouseDown(2, false, true); }, "1 3 12 " },
                 Step { "a press on a selected row", [](NSTableView& t) { t.mouseDown(3, false, false); }, "1 3 12 " },
                 Step { "let go of", [](NSTableView& t) { t.mouseUp(); }, "3 " },
                 Step { "Down", [](NSTableView& t) { t.keyDown(Key::down, false); }, "4 " },
                 Step { "Down past one that can't be", [](NSTableView& t) { t.keyDown(Key::down, false); }, "6 " },
                 Step { "Shift Up", [](NSTableView& t) { t.keyDown(Key::up, true); }, "4 6 " },
                 Step { "Home", [](NSTableView& t) { t.keyDown(Key::home, false); }, "1 " },
                 Step { "Up at the first that can be", [](NSTableView& t) { t.keyDown(Key::up, false); }, "1 " },
                 Step { "End", [](NSTableView& t) { t.keyDown(Key::end, false); }, "19 " },
                 Step { "Page Up", [](NSTableView& t) { t.keyDown(Key::pageUp, false); }, "9 " },
                 Step { "beside the rows", [](NSTableView& t) { t.mouseDown(-1, false, false); }, "" },
             }) {
            step.act(*list.table);
            EXPECT_EQ(list.selection(), step.selected) << step.name;
        }
        list.table->selectAll();
        EXPECT_EQ(list.table->selectedRowIndexes().size(), 16U);
    }

    TEST(TableView, TheSelectionGoesWithItsRows)
    {
        NumberedTable list(6);
        list.table->selectRowIndexes({ 1, 4 }, false);
        // Two new rows before the last two, of which the one with the keyboard goes first.
        list.table->rearrangeRows({ 0, 1, 2, 3, 6, 7 }, 8, NSTableView::Animation::slideDown);
        EXPECT_EQ(list.selection(), "1 6 ");
        list.table->rearrangeRows({ 0, 7, 2, 3, 4, 5, 1, 6 }, 8, NSTableView::Animation::gap);
        EXPECT_EQ(list.selection(), "1 7 ");
        EXPECT_EQ(list.table->leadRow(), 1);
        // The keyboard's row goes: the next one came up to its place.
        list.table->rearrangeRows({ 0, -1, 1, 2, 3, 4, 5, 6 }, 7, NSTableView::Animation::slideUp);
        EXPECT_EQ(list.selection(), "6 ");
        EXPECT_EQ(list.table->leadRow(), 1);
        list.numbers->count = 5;
        list.table->reloadData();
        EXPECT_EQ(list.selection(), "");
    }

} // namespace

} // namespace quillbox
