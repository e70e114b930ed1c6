#include "PreferencesUser.h"

#include "NSTabView.h"
#include "NSTextField.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    using Command = NSTableView::Command;

    TEST(PreferencesKeys, RowsMoveByOne)
    {
        struct Case {
            const char* name;
            std::set<int> rows;
            Command command;
            const char* after;
        };
        for (const Case& c : {
                 Case { "up", { 3 }, Command::moveUp, "aCbde" },
                 Case { "down", { 3 }, Command::moveDown, "abdCe" },
                 Case { "a block", { 2, 3 }, Command::moveDown, "adBCe" },
                 Case { "apart from one another", { 2, 5 }, Command::moveUp, "BacEd" },
                 Case { "the first stays below the fixed row", { 1, 3 }, Command::moveUp, "ACbde" },
                 Case { "the last stays", { 3, 5 }, Command::moveDown, "abdCE" },
                 Case { "all stay", { 1, 2 }, Command::moveUp, "ABcde" },
             }) {
            PreferencesUser user(labels("abcde"));
            user.table().selectRowIndexes(c.rows, false);
            user.table().userPerforms(c.command);
            EXPECT_EQ(user.letters(), c.after) << c.name;
            EXPECT_EQ(user.button("Apply").isEnabled(), std::string(c.name) != "all stay") << c.name;
        }
    }

    TEST(PreferencesKeys, SuggestionsAndCopiedFilesComeBelowTheSelectedRow)
    {
        PreferencesUser user(labels("ab"));
        auto& suggestions = user.view<SuggestedMenuItemsTable>();
        EXPECT_FALSE(suggestions.userPerforms(Command::add)) << "nothing is selected";
        suggestions.selectRowIndexes({ 3, 7 }, false);
        user.table().selectRowIndexes({ 1 }, false);
        EXPECT_TRUE(suggestions.userPerforms(Command::add));
        EXPECT_EQ(user.letters(), "aRPb");
        EXPECT_EQ(suggestions.announcement(), "Added 2 items");
        user.table().paste(NSPasteboard::ofFiles({ "file:///x", "file:///y" }));
        EXPECT_EQ(user.letters(), "arpXYb");
        user.table().paste(NSPasteboard::ofFiles({}));
        // Without a selection they come last.
        user.table().selectRowIndexes({}, false);
        EXPECT_TRUE(suggestions.userPerforms(Command::add, 4));
        EXPECT_EQ(user.letters(), "arpxybR");
    }

    TEST(PreferencesKeys, RemovingSelectsTheRowThatCameUp)
    {
        PreferencesUser user(labels("abcd"));
        const auto remove = [&](std::set<int> rows) {
            user.table().selectRowIndexes(std::move(rows), false);
            user.table().userPerforms(Command::remove);
            return user.letters();
        };
        EXPECT_EQ(remove({ 2 }), "aCd");
        EXPECT_EQ(remove({ 0, 2, 3 }), "A") << "the first row is not the person's";
        EXPECT_EQ(user.table().announcement(), "Removed 2 items");
        EXPECT_EQ(remove({ 1 }), "");
        EXPECT_FALSE(user.table().userPerforms(Command::remove));
    }

    TEST(PreferencesKeys, WhatWasDoneIsUndoneUntilTheWindowCloses)
    {
        PreferencesUser user(labels("abc"));
        auto& undo = user.window()->undoManager();
        user.table().selectRowIndexes({ 1 }, false);
        user.table().userPerforms(Command::remove);
        user.dragRows({ 1 }, 3);
        user.press("Reset");
        undo.undo();
        EXPECT_EQ(user.letters(), "CB");
        undo.undo();
        undo.undo();
        EXPECT_EQ(user.letters(), "Abc") << "what came back is selected";
        undo.undo();
        for (int step = 0; step < 4; ++step)
            undo.redo();
        EXPECT_EQ(user.letters(), "-S-A") << "the default list";
        // After something new there is nothing to do again.
        undo.undo();
        user.dragRowsToTrash({ 1 });
        undo.redo();
        EXPECT_EQ(user.letters().size(), 1U);

        user.press("Cancel");
        user.open();
        user.window()->undoManager().undo();
        EXPECT_EQ(user.letters(), "abc");
        EXPECT_FALSE(user.button("Apply").isEnabled());
    }

    TEST(PreferencesKeys, NothingReachesAWindowThatIsHeld)
    {
        for (const bool isPanel : { false, true }) {
            SCOPED_TRACE(isPanel ? "open panel" : "sheet");
            PreferencesUser user(labels("abc"));
            const auto window = user.window();
            NSButton& apply = user.button("Apply");
            NSButton& reset = user.button("Reset");
            user.dragRows({ 1 }, 3);
            user.table().selectRowIndexes({ 2 }, false);
            if (isPanel)
                user.dragSuggestions({ 6 }, 2);
            else
                user.table().userPerforms(Command::settings);
            ASSERT_TRUE(window->attachedSheet());
            const std::string before = user.letters();

            apply.performClick();
            reset.performClick();
            user.controller()->cancelPreferences(nullptr);
            user.view<NSTabView>().userSelectsTabViewItem(1);
            for (const Command command : NSTableView::kCommands)
                EXPECT_FALSE(user.table().userPerforms(command, 2));
            EXPECT_FALSE(user.view<SuggestedMenuItemsTable>().userPerforms(Command::add, 0));
            user.table().paste(NSPasteboard::ofFiles({ "file:///x" }));
            user.table().mouseDown(3, false, false);
            user.table().userSelects(3);
            user.table().keyDown(NSTableView::Key::down, false);
            EXPECT_FALSE(user.table().beginDragging(2));
            EXPECT_EQ(user.letters(), before);
            EXPECT_EQ(user.window(), window);
            EXPECT_EQ(user.view<NSTabView>().indexOfSelectedItem(), 0);

            if (isPanel)
                user.world.desktop.shownWindows.endPanel(NSModalResponseCancel);
            else
                user.press("Cancel");
            EXPECT_FALSE(window->attachedSheet());
            apply.performClick();
            EXPECT_EQ(user.world.desktop.shownWindows.calls.back(), "close Quillbox Preferences");
        }
    }

    TEST(PreferencesKeys, TheKeyboardGoesWithItsRowAndComesBackToItsButton)
    {
        PreferencesUser user(labels("abc"));
        user.window()->layoutIfNeeded();
        const auto buttonOf = [&](int row) { return user.table().viewAtRow(row)->subviews()[0]; };
        user.window()->userFocuses(buttonOf(2));
        user.dragRows({ 2 }, 4);
        EXPECT_EQ(user.window()->firstResponder(), buttonOf(3));
        user.table().selectRowIndexes({ 3 }, false);
        user.dragRows({ 1 }, 4);
        EXPECT_EQ(user.table().leadRow(), 3);
        user.window()->userFocuses(buttonOf(2));
        // The row's view is made anew after its sheet.
        user.table().editMenuItemProperties(2);
        user.press("Use this Setting");
        user.window()->layoutIfNeeded();
        EXPECT_EQ(user.window()->firstResponder(), buttonOf(2));
        // A row that goes, or is scrolled out of sight, leaves it to the list.
        user.dragRowsToTrash({ 2 });
        EXPECT_EQ(user.window()->firstResponder().get(), &user.table());
    }

    TEST(PreferencesKeys, SeparatorsHaveAName)
    {
        PreferencesUser user({ item(MenuItemType::fixedAppPreferences), item(MenuItemType::separator) });
        user.window()->layoutIfNeeded();
        EXPECT_EQ(user.table().textOfRow(1), "Separator");
        EXPECT_EQ(user.view<SuggestedMenuItemsTable>().textOfRow(2), "Separator");
    }

} // namespace

} // namespace quillbox
