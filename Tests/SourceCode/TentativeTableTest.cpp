#include "PreferencesUser.h"

#include "CALayer.h"
#include "GlobalVars.h"
#include "Installed.h"
#include "NSOpenPanel.h"
#include "TesselUtilityFunctions.h"
#include "VolumeNames.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillbox {

namespace {

    using Operation = NSDragOperation;

    // The dragged rows come together where the gap is, in their old order, and are selected; the others stay around
    // them.
    std::string rearranged(const std::string& before, const std::set<int>& dragged, int gap)
    {
        std::string above;
        std::string moved;
        std::string below;
        for (int row = 1; row <= static_cast<int>(before.size()); ++row) {
            const char letter = before[static_cast<std::size_t>(row - 1)];
            if (dragged.contains(row))
                moved += static_cast<char>(std::toupper(letter));
            else
                (row < gap ? above : below) += letter;
        }
        return above + moved + below;
    }

    TEST(TentativeTable, EveryReorderingOfUpToSixRows)
    {
        PreferencesUser user(labels("a"));
        for (int count = 1; count <= 5; ++count) {
            const std::string before = std::string("abcde").substr(0, static_cast<std::size_t>(count));
            for (unsigned bits = 1; bits < 1U << count; ++bits) {
                std::set<int> dragged;
                for (int row = 1; row <= count; ++row) {
                    if (bits & 1U << (row - 1))
                        dragged.insert(row);
                }
                for (int gap = 1; gap <= count + 1; ++gap) {
                    user.table().tentativeMenuItems = labels(before);
                    user.table().reloadData();
                    const std::string wanted = rearranged(before, dragged, gap);
                    const bool stays =
                        std::ranges::equal(wanted, before, {}, [](char letter) { return std::tolower(letter); });
                    ASSERT_EQ(user.hover(dragged, gap), stays ? Operation::none : Operation::move)
                        << before << ", set " << bits << ", above " << gap;
                    ASSERT_EQ(user.dragRows(dragged, gap), !stays);
                    ASSERT_EQ(user.letters(), wanted) << before << ", set " << bits << ", above " << gap;
                }
            }
        }
    }

    TEST(TentativeTable, TheFirstRowStaysFirst)
    {
        PreferencesUser user(labels("ab"));
        EXPECT_EQ(user.hover({ 1 }, 0), Operation::none);
        EXPECT_FALSE(user.dragSuggestions({ 0 }, 0));
        user.table().mouseDown(0, false, false);
        EXPECT_EQ(user.letters(), "Ab") << "it can't be selected";
        EXPECT_FALSE(user.table().beginDragging(0));
        user.table().selectAll();
        user.table().userPerforms(NSTableView::Command::remove);
        ASSERT_EQ(user.table().tentativeMenuItems.size(), 1U);
        EXPECT_EQ(user.table().tentativeMenuItems[0]->menuItemType, MenuItemType::fixedAppPreferences);
        EXPECT_TRUE(user.button("Apply").isEnabled());
    }

    TEST(TentativeTable, WhatIsDroppedIsAdded)
    {
        PreferencesUser user(labels("bc"));
        EXPECT_FALSE(user.dropFiles({ "http://a/b", "mailto:a@b" }, 1)) << "nothing of it is a file";
        EXPECT_FALSE(user.button("Apply").isEnabled());

        // A kind may be there any number of times; a label is shown disabled until it is set otherwise.
        ASSERT_TRUE(user.dragSuggestions({ 2, 7 }, 2));
        ASSERT_TRUE(user.dragSuggestions({ 2 }, 5));
        EXPECT_EQ(user.letters(), "b-pc-");
        EXPECT_EQ(user.table().tentativeMenuItems[3]->optionFlagsSv, menuOptionFlagsSv::showPlaintextAsDisabled);

        ASSERT_TRUE(user.dropFiles({ "file:///a/one%20two", "http://a/b", "file://localhost/a/%ff" }, 1));
        const auto& files = user.table().tentativeMenuItems;
        EXPECT_EQ(files[1]->displayString, "one two");
        EXPECT_EQ(files[1]->unixPath, "/a/one two");
        EXPECT_EQ(files[1]->optionFlagsSv, MenuOptionFlagsSv());
        EXPECT_EQ(files[2]->fileURL->path(), "/a/\xff");
        EXPECT_EQ(files.size(), 8U);
    }

    TEST(TentativeTable, PickedFilesComeWithTheirPanel)
    {
        PreferencesUser user(labels("bc"));
        user.world.directories.home = user.world.files.path();
        HeadlessWindows& windows = user.world.desktop.shownWindows;
        const auto answer = [&](std::vector<URL> urls, NSModalResponse response) {
            windows.panel->setURLs(std::move(urls));
            windows.endPanel(response);
        };
        const URL file = URL::fileURLWithPath("/a/x");
        EXPECT_FALSE(user.dragSuggestions({ 6 }, 2));
        ASSERT_TRUE(windows.panel);
        EXPECT_EQ(windows.panel->directoryURL().path(), user.world.directories.home);
        answer({ file }, NSModalResponseCancel);
        EXPECT_FALSE(user.button("Apply").isEnabled());

        user.dragSuggestions({ 6 }, 2);
        answer({ file, URL::fileURLWithPath("/y") }, NSModalResponseOK);
        EXPECT_EQ(user.letters(), "bxyc");
        EXPECT_TRUE(user.button("Apply").isEnabled());

        user.dragSuggestions({ 6 }, 2);
        answer({}, NSModalResponseOK);
        EXPECT_EQ(World::loggedMessages(),
                  std::vector<std::string> { "filePicker returned \"OK\", but filePicker.url[] is empty?" });

        // Meanwhile the list has become shorter, and at last the window is gone.
        user.dragSuggestions({ 6 }, 5);
        user.table().deleteMenuItems({ 2, 3, 4 });
        answer({ file }, NSModalResponseOK);
        EXPECT_EQ(user.letters(), "bx");
        user.dragSuggestions({ 6 }, 2);
        user.window()->close();
        answer({ file }, NSModalResponseOK);
    }

    TEST(TentativeTable, RowsForOtherPrograms)
    {
        PreferencesUser user(labels("bcd"));
        user.table().selectRowIndexes({ 1, 3 }, false);
        const auto rows = user.table().beginDragging(3);
        EXPECT_EQ(rows->plainText(), "b\nd");
        EXPECT_EQ(rows->propertyLists(GlobalVars::tentativeMenuItemPasteboardType()),
                  (std::vector<PropertyList> { std::int64_t { 1 }, std::int64_t { 3 } }));
        user.view<SuggestedMenuItemsTable>().selectRowIndexes({ 3 }, false);
        EXPECT_EQ(user.view<SuggestedMenuItemsTable>().beginDragging(3)->plainText(), "Recent Items");
    }

    std::vector<NSView*> puffsAbove(const TentativeMenuItemDeleter& trash)
    {
        std::vector<NSView*> found;
        for (const auto& view : trash.superview()->subviews()) {
            if (view->identifier() == "smoke")
                found.push_back(view.get());
        }
        return found;
    }

    TEST(Trash, IsFramedWhileRowsAreOverItAndRefusesThoseOfAnotherList)
    {
        PreferencesUser user(labels("ab"));
        TentativeMenuItemDeleter& trash = user.trash();
        DragTracking drag = user.dragOf({ 1 });
        EXPECT_EQ(drag.move(trash.shared_from_this(), { 5, 5 }), Operation::deleteOperation);
        EXPECT_EQ(trash.layer()->borderWidth(), 2);
        drag.move(user.table().shared_from_this(), { 5, 5 });
        EXPECT_EQ(trash.layer()->borderWidth(), 0);
        drag.move(trash.shared_from_this(), { 5, 5 });
        user.press("Reset");
        EXPECT_FALSE(drag.drop());
        drag.end();
        EXPECT_TRUE(puffsAbove(trash).empty());
    }

    TEST(Trash, TakesRowsAndShowsOnePuff)
    {
        PreferencesUser user(labels("bcdef"));
        TentativeMenuItemDeleter& trash = user.trash();
        const auto puffs = [&trash] { return puffsAbove(trash); };
        DragTracking drag = user.dragOf({ 1, 3, 4 });
        drag.move(trash.shared_from_this(), { 5, 5 });
        EXPECT_TRUE(drag.drop());
        EXPECT_EQ(user.letters(), "cf");
        EXPECT_TRUE(puffs().empty()) << "the drag has not ended";
        drag.end();
        user.window()->layoutIfNeeded();
        ASSERT_EQ(puffs().size(), 1U);
        const NSRect can = trash.frame();
        EXPECT_EQ(puffs()[0]->frame(), (NSRect { { can.midX() - 40, can.midY() - 40 }, { 80, 80 } }));
        ASSERT_EQ(trash.smokeImages().size(), 10U);
        for (const NSImage& image : trash.smokeImages()) {
            ASSERT_EQ(puffs().size(), 1U);
            const auto* shown = std::any_cast<NSImage>(&puffs()[0]->layer()->presentationContents());
            ASSERT_TRUE(shown && *shown == image);
            user.world.clock.advance(std::chrono::milliseconds(30));
        }
        EXPECT_TRUE(puffs().empty());
        EXPECT_EQ(user.world.clock.pendingCount(), 0U);
    }

    TEST(TentativeTable, AButtonHasItsCursorWhileItCanBeAimedAt)
    {
        PreferencesUser user(labels("abcdefghijklmnopqrstuvwxy"));
        user.window()->layoutIfNeeded();
        const auto clip = user.table().scrollViewContentView.lock();
        const auto& row = user.table().visibleRowViews().begin()->second;
        NSView& button = *row->subviews()[0];
        const double bottom = row->frame().minY() + button.frame().maxY();
        for (const auto& [shown, areas] : { std::pair(16.0, 1U), { 7.0, 1U }, { 6.0, 0U } }) {
            clip->scroll(bottom - shown);
            ASSERT_EQ(button.updatedCursorRects().size(), areas) << shown;
            if (areas) {
                EXPECT_EQ(button.updatedCursorRects()[0].rect, button.bounds());
                EXPECT_EQ(button.updatedCursorRects()[0].cursor, NSCursor::pointingHand);
            }
        }
    }

    TEST(TesselUtilityFunctions, TextFieldsArePlacedAndSetUp)
    {
        const HeadlessDesktop desktop;
        const auto view = std::make_shared<NSView>();
        view->setFrameSize({ 200, 200 });
        const auto inside = TesselUtilityFunctions::addTextFieldToView(
            { .view = view, .xOffset = 3, .yOffset = 5, .width = 40, .editable = true });
        const auto below = TesselUtilityFunctions::addTextFieldToView(
            { .text = "ab", .view = view, .alignTopLeftWith = view, .placeBelow = inside, .xOffset = 1, .yOffset = 2 });
        EXPECT_TRUE(inside->isSelectable() && inside->isBezeled());
        EXPECT_FALSE(below->isSelectable() || below->isBezeled());
        view->layoutIfNeeded();
        EXPECT_EQ(inside->frame(), (NSRect { { 3, 5 }, { 40, 22 } }));
        EXPECT_EQ(below->frame(), (NSRect { { 4, 29 }, { 14, 16 } }));
    }

    TEST(TentativeTable, VolumesHaveTheirNames)
    {
        class Names final : public VolumeNames {
        public:
            std::optional<std::string> localizedName(const std::string&) override { return name; }
            std::optional<std::string> name = "Backup";
        } names;
        const Installed<VolumeNames> installed(names);
        const std::vector<URL> roots { URL::fileURLWithPath("/") };
        EXPECT_EQ(TentativeMenuItemsTable::menuItemsFromURLs(roots)[0]->displayString, "Backup");
        names.name.reset();
        EXPECT_EQ(TentativeMenuItemsTable::menuItemsFromURLs(roots)[0]->displayString, "Volume Root");
    }

} // namespace

} // namespace quillbox
