#include "PreferencesUser.h"

#include "NSOpenPanel.h"
#include "NSTabView.h"
#include "NSTextField.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    using Type = MenuItemType;
    using Command = NSTableView::Command;

    MainMenuItem::List labels(const std::string& titles)
    {
        MainMenuItem::List items { std::make_shared<MainMenuItem>(Type::fixedAppPreferences, "-") };
        for (const char title : titles)
            items.push_back(std::make_shared<MainMenuItem>(Type::plaintext, std::string(1, title)));
        return items;
    }

    // The titles of the list by their first letters, after the fixed row; selected ones in capitals.
    std::string letters(const PreferencesUser& user)
    {
        std::string text;
        for (std::size_t row = 1; row < user.table().tentativeMenuItems.size(); ++row) {
            const char letter = user.table().tentativeMenuItems[row]->displayString[0];
            const bool isSelected = user.table().selectedRowIndexes().contains(static_cast<int>(row));
            text += static_cast<char>(isSelected ? std::toupper(letter) : std::tolower(letter));
        }
        return text;
    }

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
            World world;
            MainMenuItem::actualMenuItems() = labels("abcde");
            PreferencesUser user(world);
            user.table().selectRowIndexes(c.rows, false);
            user.table().userPerforms(c.command);
            EXPECT_EQ(letters(user), c.after) << c.name;
            EXPECT_EQ(user.button("Apply").isEnabled(), std::string(c.name) != "all stay") << c.name;
        }
    }

    TEST(PreferencesKeys, SuggestionsAndCopiedFilesComeBelowTheSelectedRow)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels("ab");
        PreferencesUser user(world);
        auto& suggestions = user.view<SuggestedMenuItemsTable>();
        EXPECT_FALSE(suggestions.userPerforms(Command::add)) << "nothing is selected";
        suggestions.selectRowIndexes({ 3, 7 }, false);
        user.table().selectRowIndexes({ 1 }, false);
        EXPECT_TRUE(suggestions.userPerforms(Command::add));
        EXPECT_EQ(letters(user), "aRPb");
        EXPECT_EQ(suggestions.announcement(), "Added 2 items");
        user.table().paste(NSPasteboard::ofFiles({ "file:///x", "file:///y" }));
        EXPECT_EQ(letters(user), "arpXYb");
        user.table().paste(NSPasteboard::ofFiles({}));
        // Without a selection they come last.
        user.table().selectRowIndexes({}, false);
        EXPECT_TRUE(suggestions.userPerforms(Command::add, 4));
        EXPECT_EQ(letters(user), "arpxybR");
        // A file is asked for first.
        EXPECT_TRUE(suggestions.userPerforms(Command::add, 6));
        ASSERT_TRUE(world.desktop.shownWindows.panel);
        world.desktop.shownWindows.panel->setURLs({ URL::fileURLWithPath("/z") });
        world.desktop.shownWindows.endPanel(NSModalResponseOK);
        EXPECT_EQ(letters(user), "arpxybRz");
    }

    TEST(PreferencesKeys, RemovingSelectsTheRowThatCameUp)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels("abcd");
        PreferencesUser user(world);
        const auto remove = [&](std::set<int> rows) {
            user.table().selectRowIndexes(std::move(rows), false);
            user.table().userPerforms(Command::remove);
            return letters(user);
        };
        EXPECT_EQ(remove({ 2 }), "aCd");
        EXPECT_EQ(remove({ 2, 3 }), "A");
        EXPECT_EQ(user.table().announcement(), "Removed 2 items");
        EXPECT_EQ(remove({ 1 }), "");
        EXPECT_FALSE(user.table().userPerforms(Command::remove));
    }

    TEST(PreferencesKeys, WhatWasDoneIsUndoneUntilTheWindowCloses)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels("abc");
        {
            PreferencesUser user(world);
            auto& undo = user.window()->undoManager();
            user.table().selectRowIndexes({ 1 }, false);
            user.table().userPerforms(Command::remove);
            user.dragRows({ 1 }, 3);
            user.press("Reset");
            const auto defaults = user.list();
            undo.undo();
            EXPECT_EQ(letters(user), "CB");
            undo.undo();
            undo.undo();
            EXPECT_EQ(letters(user), "Abc") << "what came back is selected";
            undo.undo();
            for (int step = 0; step < 4; ++step)
                undo.redo();
            EXPECT_EQ(user.list(), defaults);
            // After something new there is nothing to do again.
            undo.undo();
            user.dragRowsToTrash({ 1 });
            undo.redo();
            EXPECT_EQ(letters(user).size(), 1U);
            user.press("Cancel");
        }
        PreferencesUser again(world);
        EXPECT_EQ(letters(again), "abc");
        again.window()->undoManager().undo();
        EXPECT_EQ(letters(again), "abc");
        EXPECT_FALSE(again.button("Apply").isEnabled());
    }

    TEST(PreferencesKeys, NothingReachesAWindowThatIsHeld)
    {
        for (const bool isPanel : { false, true }) {
            SCOPED_TRACE(isPanel ? "open panel" : "sheet");
            World world;
            MainMenuItem::actualMenuItems() = labels("abc");
            PreferencesUser user(world);
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
            const std::string before = letters(user);

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
            EXPECT_EQ(letters(user), before);
            EXPECT_EQ(user.window(), window);
            EXPECT_EQ(user.view<NSTabView>().indexOfSelectedItem(), 0);

            if (isPanel)
                world.desktop.shownWindows.endPanel(NSModalResponseCancel);
            else
                user.press("Cancel");
            EXPECT_FALSE(window->attachedSheet());
            apply.performClick();
            EXPECT_EQ(world.desktop.shownWindows.calls.back(), "close Quillbox Preferences");
        }
    }

    TEST(PreferencesKeys, TheKeyboardGoesWithItsRowAndComesBackToItsButton)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels("abc");
        PreferencesUser user(world);
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
        World world;
        MainMenuItem::actualMenuItems() = { labels("")[0], std::make_shared<MainMenuItem>(Type::separator) };
        PreferencesUser user(world);
        user.window()->layoutIfNeeded();
        EXPECT_EQ(user.table().textOfRow(1), "Separator");
        EXPECT_EQ(user.view<SuggestedMenuItemsTable>().textOfRow(2), "Separator");
    }

} // namespace

} // namespace quillbox
