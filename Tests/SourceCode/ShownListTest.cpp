#include "PreferencesUser.h"

#include "NSTextField.h"

#include <gtest/gtest.h>

#include <random>

namespace quillbox {

namespace {

    using Operation = NSDragOperation;

    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz+*=";

    std::string titleShownIn(NSView& row)
    {
        std::string title;
        PreferencesUser::visit(row, [&](NSView& each) {
            if (const auto* field = dynamic_cast<NSTextField*>(&each))
                title = field->stringValue();
        });
        return title;
    }

    // What is wrong with what the window shows of its list; empty where all is as it should be.
    std::string fault(const PreferencesUser& user)
    {
        user.window()->layoutIfNeeded();
        NSTableView& table = user.table();
        const auto& list = user.table().tentativeMenuItems;
        const auto& shown = table.visibleRowViews();
        if (table.numberOfRows() != static_cast<int>(list.size()))
            return "the number of rows";
        if (table.subviews().size() != shown.size())
            return "a view of no row";
        const NSRect inSight = std::dynamic_pointer_cast<NSClipView>(table.superview())->bounds();
        std::size_t rowsInSight = 0;
        for (int row = 0; row < table.numberOfRows(); ++row)
            rowsInSight += table.rectOfRow(row).intersection(inSight).size.height > 0 ? 1 : 0;
        if (shown.size() != rowsInSight)
            return "rows in sight: " + std::to_string(shown.size()) + " of " + std::to_string(rowsInSight);
        for (const auto& [row, view] : shown) {
            const std::string at = "row " + std::to_string(row) + ": ";
            if (titleShownIn(*view) != list.at(static_cast<std::size_t>(row))->displayString)
                return at + titleShownIn(*view);
            if (view->frame().minY() != table.rectOfRow(row).minY())
                return at + "its place";
            const auto* button = dynamic_cast<const NSButton*>(view->subviews()[0].get());
            if (button && button->tag() != row)
                return at + "its button's number";
        }
        return {};
    }

    TEST(ShownList, IsTheListAfterEveryChange)
    {
        for (unsigned seed = 1; seed <= 3; ++seed) {
            PreferencesUser user(labels("abcdefghi"));
            std::minstd_rand random(seed);
            const auto pick = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
            for (int step = 0; step < 150; ++step) {
                auto& table = user.table();
                const int count = static_cast<int>(table.tentativeMenuItems.size());
                std::set<int> rows;
                while (count > 1 && (rows.empty() || pick(3) > 0))
                    rows.insert(1 + pick(count - 1));
                const int action = pick(9);
                if (action == 0 && !rows.empty())
                    user.dragRows(rows, 1 + pick(count));
                else if (action == 1 && !rows.empty())
                    user.dragRowsToTrash(rows);
                else if (action == 2)
                    user.dropFiles({ "file:///" + std::to_string(step), "file:///b" }, 1 + pick(count));
                else if (action == 3)
                    user.dragSuggestions({ 2, 3, 7 }, 1 + pick(count));
                else if (action == 4 && step % 8 == 0)
                    user.press("Reset");
                else if (action == 5)
                    std::dynamic_pointer_cast<NSClipView>(table.superview())->scroll(pick(count * 24));
                else if (action == 6)
                    user.window()->setContentSize({ 520, 650.0 + pick(400) });
                else if (action == 7) {
                    // Another list, longer or shorter.
                    table.tentativeMenuItems = labels(kLetters.substr(0, static_cast<std::size_t>(pick(30))));
                    table.reloadData();
                } else {
                    const int row = pick(count);
                    // A copy is renamed: after Reset these are the items of the default list, which every test shares.
                    auto& item = table.tentativeMenuItems[static_cast<std::size_t>(row)];
                    item = std::make_shared<MainMenuItem>(*item);
                    item->displayString += "!";
                    table.reloadData(row);
                }
                ASSERT_EQ(fault(user), "") << "seed " << seed << ", step " << step << ", action " << action;
            }
        }
    }

    TEST(RowDrag, CarriesItemsOfItsOwnWindowAndNoNumbers)
    {
        PreferencesUser user(labels("bcdef"));
        const NSPoint gap { 10, user.table().rowHeight() };
        const auto list = user.table().tentativeMenuItems;

        // The rows change places under the drag: the held items move.
        DragTracking moved = user.dragOf({ 4, 5 });
        user.table().changeList({ list[0], list[5], list[4], list[3], list[1] }, NSTableView::Animation::none);
        EXPECT_EQ(moved.move(user.table().shared_from_this(), { 10, 5 * user.table().rowHeight() }), Operation::move);
        EXPECT_TRUE(moved.drop());
        EXPECT_EQ(user.letters(), "dbFE");

        // The list is another one: nothing of it moves or goes.
        for (const bool isTrash : { false, true }) {
            DragTracking held = user.dragOf({ 1 });
            user.press("Reset");
            const auto after = user.letters();
            NSView& over = isTrash ? static_cast<NSView&>(user.trash()) : user.table();
            EXPECT_EQ(held.move(over.shared_from_this(), gap), isTrash ? Operation::deleteOperation : Operation::none);
            EXPECT_FALSE(held.drop());
            held.end();
            EXPECT_EQ(user.letters(), after);
            user.table().changeList(list, NSTableView::Animation::none);
        }

        // The window is another one, though it shows the same items.
        DragTracking outlived = user.dragOf({ 5 });
        // The event in which a drag runs goes on, and holds what was closed in it.
        const auto closed = user.window();
        user.press("Cancel");
        user.open();
        ASSERT_NE(user.window(), closed);
        closed->orderFrontRegardless();
        EXPECT_FALSE(closed->isVisible());
        user.window()->layoutIfNeeded();
        EXPECT_EQ(outlived.move(user.table().shared_from_this(), gap), Operation::none);
        outlived.move(user.trash().shared_from_this(), { 5, 5 });
        EXPECT_FALSE(outlived.drop());
        EXPECT_EQ(user.letters().size(), 5U);
        EXPECT_FALSE(user.button("Apply").isEnabled());
    }

} // namespace

} // namespace quillbox
