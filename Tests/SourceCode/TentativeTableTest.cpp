#include "PreferencesUser.h"

#include "CALayer.h"
#include "GlobalVars.h"
#include "Installed.h"
#include "ManageDefaults.h"
#include "NSOpenPanel.h"
#include "NSTextField.h"
#include "TesselUtilityFunctions.h"
#include "VolumeNames.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillbox {

namespace {

    using Type = MenuItemType;
    using Operation = NSDragOperation;
    using Strings = std::vector<std::string>;

    MainMenuItem::List labels(int count)
    {
        MainMenuItem::List items { std::make_shared<MainMenuItem>(Type::fixedAppPreferences) };
        for (int row = 1; row < count; ++row)
            items.push_back(
                std::make_shared<MainMenuItem>(Type::plaintext, std::string(1, static_cast<char>('a' + row))));
        return items;
    }

    // The dragged rows come together where the gap is, in their old order; so do the others, around them.
    MainMenuItem::List rearranged(const MainMenuItem::List& before, const std::set<int>& dragged, int gap)
    {
        MainMenuItem::List result;
        const auto append = [&](int from, int to, bool ofDragged) {
            for (int row = from; row < to; ++row) {
                if (dragged.contains(row) == ofDragged)
                    result.push_back(before[static_cast<std::size_t>(row)]);
            }
        };
        const int count = static_cast<int>(before.size());
        append(0, gap, false);
        append(0, count, true);
        append(gap, count, false);
        return result;
    }

    Strings rowTexts(PreferencesUser& user)
    {
        Strings texts;
        for (const auto& [row, view] : user.table().visibleRowViews()) {
            PreferencesUser::visit(*view, [&](NSView& each) {
                if (const auto* field = dynamic_cast<NSTextField*>(&each))
                    texts.push_back(field->stringValue());
            });
        }
        return texts;
    }

    TEST(TentativeTable, EveryReorderingOfUpToSixRows)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels(2);
        PreferencesUser user(world);
        for (int count = 2; count <= 6; ++count) {
            const MainMenuItem::List before = labels(count);
            for (unsigned bits = 1; bits < 1U << (count - 1); ++bits) {
                std::set<int> dragged;
                for (int row = 1; row < count; ++row) {
                    if (bits & 1U << (row - 1))
                        dragged.insert(row);
                }
                for (int gap = 1; gap <= count; ++gap) {
                    user.table().tentativeMenuItems = before;
                    user.table().reloadData();
                    const MainMenuItem::List wanted = rearranged(before, dragged, gap);
                    const bool stays = wanted == before;
                    ASSERT_EQ(user.hover(dragged, gap), stays ? Operation::none : Operation::move)
                        << count << " rows, set " << bits << ", above " << gap;
                    if (stays)
                        continue;
                    ASSERT_TRUE(user.dragRows(dragged, gap));
                    ASSERT_EQ(user.table().tentativeMenuItems, wanted)
                        << count << " rows, set " << bits << ", above " << gap;
                    // The views and the selection went along.
                    Strings titles;
                    for (const auto& item : wanted)
                        titles.push_back(item->displayString);
                    ASSERT_EQ(rowTexts(user), titles);
                    ASSERT_EQ(user.table().selectedRowIndexes().size(), dragged.size());
                    for (const int row : user.table().selectedRowIndexes())
                        ASSERT_TRUE(std::any_of(dragged.begin(), dragged.end(), [&](int old) {
                            return before[static_cast<std::size_t>(old)] == wanted[static_cast<std::size_t>(row)];
                        }));
                }
            }
        }
    }

    TEST(TentativeTable, TheFirstRowStaysFirst)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels(3);
        PreferencesUser user(world);
        EXPECT_EQ(user.hover({ 1 }, 0), Operation::none);
        EXPECT_FALSE(user.dragSuggestions({ 0 }, 0));
        user.table().mouseDown(0, false, false);
        EXPECT_EQ(user.table().selectedRowIndexes(), std::set<int> { 1 });
        EXPECT_FALSE(user.table().beginDragging(0));
        user.table().selectAll();
        user.table().userPerforms(NSTableView::Command::remove);
        EXPECT_EQ(user.list(), Strings { "fixedAppPreferences:Quillbox Preferences..." });
        EXPECT_TRUE(user.button("Apply").isEnabled());
        user.table().userPerforms(NSTableView::Command::remove);
        EXPECT_EQ(user.list().size(), 1U);
    }

    TEST(TentativeTable, WhatIsDroppedIsAdded)
    {
        World world;
        const std::string directory = world.files.path("Papers");
        MainMenuItem::actualMenuItems() = labels(3);
        PreferencesUser user(world);
        // A kind may be there any number of times; a label is shown disabled until it is set otherwise.
        ASSERT_TRUE(user.dragSuggestions({ 2, 7 }, 2));
        ASSERT_TRUE(user.dragSuggestions({ 2 }, 5));
        EXPECT_EQ(user.list(),
                  (Strings { "fixedAppPreferences:Quillbox Preferences...", "plaintext:b",
                             "separator:" + GlobalVars::separatorDisplayString(), "plaintext:Plain Text", "plaintext:c",
                             "separator:" + GlobalVars::separatorDisplayString() }));
        EXPECT_EQ(user.table().tentativeMenuItems[3]->optionFlagsSv, menuOptionFlagsSv::showPlaintextAsDisabled);

        ASSERT_TRUE(user.dropFiles({ "file:///a/one%20two", "http://a/b", "file://localhost/a/%ff" }, 1));
        const auto& files = user.table().tentativeMenuItems;
        EXPECT_EQ(files[1]->displayString, "one two");
        EXPECT_EQ(files[1]->unixPath, "/a/one two");
        EXPECT_EQ(files[2]->fileURL->path(), "/a/\xff");
        EXPECT_EQ(files[1]->optionFlagsSv, MenuOptionFlagsSv());
        EXPECT_EQ(files.size(), 8U);
        // Row views know their numbers again.
        user.window()->layoutIfNeeded();
        for (const auto& [row, view] : user.table().visibleRowViews()) {
            const auto* edit = dynamic_cast<const NSButton*>(view->subviews()[0].get());
            EXPECT_TRUE(!edit || edit->tag() == row);
        }
    }

    TEST(TentativeTable, DropsOfNothingUsableChangeNothing)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels(3);
        PreferencesUser user(world);
        const Strings before = user.list();
        EXPECT_FALSE(user.dropFiles({ "http://a/b", "mailto:a@b" }, 1));
        for (const PropertyList& value : { PropertyList("noSuchKind"), PropertyList(std::int64_t { 3 }) }) {
            class Writer final : public NSPasteboardWriting {
            public:
                explicit Writer(PropertyList shown) : value_(std::move(shown)) { }
                std::vector<std::string> writableTypes() const override
                {
                    return { GlobalVars::suggestedMenuItemPasteboardType() };
                }
                std::optional<PropertyList> pasteboardPropertyList(const std::string&) const override { return value_; }

            private:
                PropertyList value_;
            };
            DragTracking tracking(NSPasteboard({ std::make_shared<Writer>(value) }));
            tracking.move(user.table().shared_from_this(), { 10, 30 });
            EXPECT_FALSE(tracking.drop());
            tracking.end();
        }
        EXPECT_EQ(user.list(), before);
        EXPECT_FALSE(user.button("Apply").isEnabled());
    }

    TEST(TentativeTable, PickedFilesComeWithTheirPanel)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels(3);
        world.directories.home = world.files.path();
        PreferencesUser user(world);
        auto& windows = world.desktop.shownWindows;
        EXPECT_FALSE(user.dragSuggestions({ 6 }, 2));
        ASSERT_TRUE(windows.panel);
        EXPECT_EQ(windows.panel->message(), "Select a File or Directory to Add to the Quillbox");
        EXPECT_EQ(windows.panel->prompt(), "Add This Item");
        EXPECT_EQ(windows.panel->directoryURL().path(), world.files.path());
        windows.endPanel(NSModalResponseCancel);
        EXPECT_FALSE(user.button("Apply").isEnabled());

        user.dragSuggestions({ 6 }, 2);
        windows.panel->setURLs({ URL::fileURLWithPath("/a/b"), URL::fileURLWithPath("/c") });
        windows.endPanel(NSModalResponseOK);
        EXPECT_EQ(user.list(),
                  (Strings { "fixedAppPreferences:Quillbox Preferences...", "plaintext:b", "arbitraryPath:b",
                             "arbitraryPath:c", "plaintext:c" }));
        EXPECT_TRUE(user.button("Apply").isEnabled());

        user.dragSuggestions({ 6 }, 2);
        windows.panel->setURLs({});
        windows.endPanel(NSModalResponseOK);
        EXPECT_EQ(World::loggedMessages(), Strings { "filePicker returned \"OK\", but filePicker.url[] is empty?" });
        // The window may be gone when the panel ends.
        user.dragSuggestions({ 6 }, 2);
        windows.panel->setURLs({ URL::fileURLWithPath("/a/b") });
        user.window()->close();
        windows.endPanel(NSModalResponseOK);
    }

    TEST(TentativeTable, RowsForOtherPrograms)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels(4);
        PreferencesUser user(world);
        user.table().selectRowIndexes({ 1, 3 }, false);
        const auto rows = user.table().beginDragging(3);
        EXPECT_EQ(rows->plainText(), "b\nd");
        EXPECT_EQ(rows->propertyLists(GlobalVars::tentativeMenuItemPasteboardType()),
                  (std::vector<PropertyList> { std::int64_t { 1 }, std::int64_t { 3 } }));
        EXPECT_EQ(GlobalVars::tentativeMenuItemPasteboardType(), "org.quillbox.Quillbox.tentative.MenuItem");
        struct Case {
            const char* raw;
            const char* text;
        };
        for (const Case& c : { Case { "recentItemsApps", "Recent Applications" },
                               Case { "nothing", "(MenuItemType.nothing isn't defined)" } })
            EXPECT_EQ(*SuggestedMenuItemsPasteboardWriter(c.raw).pasteboardPropertyList(NSPasteboardTypeString),
                      PropertyList(c.text));
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

    TEST(Trash, TakesRowsAndShowsOnePuff)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels(6);
        PreferencesUser user(world);
        TentativeMenuItemDeleter& trash = user.trash();
        const auto puffs = [&trash] { return puffsAbove(trash); };
        const auto rows = [&] {
            user.table().selectRowIndexes({ 1, 3, 4 }, false);
            return *user.table().beginDragging(3);
        };
        // Over the can and away again.
        DragTracking away(rows());
        EXPECT_EQ(away.move(trash.shared_from_this(), { 5, 5 }), Operation::deleteOperation);
        EXPECT_EQ(trash.layer()->borderWidth(), 2);
        EXPECT_EQ(trash.layer()->borderColor(), CGColor::controlAccent);
        away.move(user.table().shared_from_this(), { 5, 5 });
        EXPECT_EQ(trash.layer()->borderWidth(), 0);
        away.end();
        EXPECT_TRUE(puffs().empty());
        EXPECT_FALSE(user.dropFiles({ "file:///a" }, 0));
        // What is no row of the list is refused, and there is no puff.
        for (const NSPasteboard& refused : { NSPasteboard::ofFiles({ "file:///a" }), NSPasteboard(),
                                             NSPasteboard::promising(GlobalVars::tentativeMenuItemPasteboardType()) }) {
            EXPECT_FALSE(trash.performDragOperation({ refused, {} }));
            trash.draggingEnded();
        }
        EXPECT_TRUE(puffs().empty());
        EXPECT_EQ(user.list().size(), 6U);

        ASSERT_EQ(trash.smokeImages().size(), 10U);
        DragTracking drag(rows());
        drag.move(trash.shared_from_this(), { 5, 5 });
        EXPECT_TRUE(drag.drop());
        EXPECT_EQ(user.list(),
                  (Strings { "fixedAppPreferences:Quillbox Preferences...", "plaintext:c", "plaintext:f" }));
        EXPECT_TRUE(puffs().empty()) << "the drag has not ended";
        drag.end();
        ASSERT_EQ(puffs().size(), 1U);
        user.window()->layoutIfNeeded();
        const NSRect can = trash.frame();
        EXPECT_EQ(puffs()[0]->frame(), (NSRect { { can.midX() - 40, can.midY() - 40 }, { 80, 80 } }));
        for (int frame = 0; frame < 10; ++frame) {
            ASSERT_EQ(puffs().size(), 1U) << frame;
            const auto* shown = std::any_cast<NSImage>(&puffs()[0]->layer()->presentationContents());
            ASSERT_TRUE(shown && *shown == trash.smokeImages()[static_cast<std::size_t>(frame)]) << frame;
            world.clock.advance(std::chrono::milliseconds(30));
        }
        EXPECT_TRUE(puffs().empty());
        EXPECT_EQ(world.clock.pendingCount(), 0U);
        // Without its table the drop counts all the same.
        trash.tableWithTentativeMenus.reset();
        EXPECT_TRUE(user.dragRowsToTrash({ 1 }));
        EXPECT_EQ(user.list().size(), 3U);
        EXPECT_EQ(puffs().size(), 1U);
    }

    TEST(TentativeTable, AButtonHasItsCursorWhileItCanBeAimedAt)
    {
        World world;
        MainMenuItem::actualMenuItems() = labels(26);
        PreferencesUser user(world);
        user.window()->layoutIfNeeded();
        const auto clip = user.table().scrollViewContentView.lock();
        const auto& row = user.table().visibleRowViews().begin()->second;
        NSView& button = *row->subviews()[0];
        const double bottom = row->frame().minY() + button.frame().maxY();
        struct Case {
            double shown;
            std::size_t areas;
        };
        for (const Case& c : { Case { 16, 1 }, Case { 7, 1 }, Case { 6, 0 } }) {
            clip->scroll(bottom - c.shown);
            ASSERT_EQ(button.updatedCursorRects().size(), c.areas) << c.shown;
            if (c.areas) {
                EXPECT_EQ(button.updatedCursorRects()[0].rect, button.bounds());
                EXPECT_EQ(button.updatedCursorRects()[0].cursor, NSCursor::pointingHand);
            }
        }
        button.setHidden(true);
        clip->scroll(0);
        EXPECT_TRUE(button.updatedCursorRects().empty());
    }

    TEST(TesselUtilityFunctions, TextFieldsArePlacedAndSetUp)
    {
        const HeadlessDesktop desktop;
        const auto view = std::make_shared<NSView>();
        view->setFrameSize({ 200, 200 });
        const auto inside = TesselUtilityFunctions::addTextFieldToView(
            { .view = view, .xOffset = 3, .yOffset = 5, .width = 40, .editable = true });
        EXPECT_EQ(inside->stringValue(), "addTextFieldToView text");
        EXPECT_TRUE(inside->isSelectable() && inside->isBezeled());
        const auto below = TesselUtilityFunctions::addTextFieldToView({ .text = "ab",
                                                                        .view = view,
                                                                        .alignTopLeftWith = view,
                                                                        .placeBelow = inside,
                                                                        .xOffset = 1,
                                                                        .yOffset = 2,
                                                                        .width = -1 });
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
