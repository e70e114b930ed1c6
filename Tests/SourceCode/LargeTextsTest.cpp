#include "PreferencesUser.h"

#include "ManageDefaults.h"
#include "NSScrollView.h"
#include "NSTabView.h"
#include "NSTextField.h"
#include "ViewDump.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    constexpr double kRounding = 0.001;

    // The arrow's glyph is low in its line, which begins beside "Drag".
    bool mayOverlap(const NSView& view)
    {
        const auto* field = dynamic_cast<const NSTextField*>(&view);
        return field && field->stringValue() == "\u293D";
    }

    // Nothing lies on its neighbour, sticks out of what it is in, or is narrower than its title.
    void expectRoom(NSView& view)
    {
        const bool isClip = dynamic_cast<NSClipView*>(&view) != nullptr;
        for (const auto& one : view.subviews()) {
            const NSRect frame = one->frame();
            const NSSize inside = frame.intersection(view.bounds()).size;
            EXPECT_TRUE(
                isClip
                || (inside.width > frame.size.width - kRounding && inside.height > frame.size.height - kRounding))
                << viewDump(*one);
            if (const auto* button = dynamic_cast<NSButton*>(one.get())) {
                EXPECT_GE(frame.size.width, button->leastSize().width) << button->title();
            }
            for (const auto& other : view.subviews()) {
                if (one == other || one->isHidden() || other->isHidden() || mayOverlap(*one) || mayOverlap(*other))
                    continue;
                const NSSize shared = frame.intersection(other->frame()).size;
                EXPECT_FALSE(shared.width > kRounding && shared.height > kRounding)
                    << viewDump(*one) << viewDump(*other);
            }
            if (!dynamic_cast<NSTableView*>(one.get()))
                expectRoom(*one);
        }
    }

    TEST(LargeTexts, AndSmallScreensHaveRoom)
    {
        struct Case {
            const char* name;
            double textScale;
            NSSize room;
        };
        for (const Case& c : {
                 Case { "large texts", 1.5, { 1900, 1000 } },
                 Case { "very large texts", 2.6, { 1900, 1000 } },
                 Case { "a low screen", 1, { 950, 470 } },
                 Case { "very large texts on a low screen", 2.6, { 1350, 700 } },
             }) {
            SCOPED_TRACE(c.name);
            PreferencesUser user;
            user.world.desktop.shownWindows.textScale = c.textScale;
            user.world.desktop.shownWindows.room = c.room;
            ManageDefaults::showDebugTab() = true;
            user.open({ std::make_shared<MainMenuItem>(MenuItemType::fixedAppPreferences),
                        std::make_shared<MainMenuItem>(MenuItemType::systemSettings),
                        std::make_shared<MainMenuItem>(MenuItemType::plaintext),
                        std::make_shared<MainMenuItem>(MenuItemType::recentItems) });
            const auto expectWhole = [&](NSWindow& window) {
                EXPECT_EQ(window.contentView()->frame().intersection({ {}, c.room }), window.contentView()->frame());
                expectRoom(*window.contentView());
            };
            expectWhole(*user.window());
            for (int row = 0; row < 4; ++row) {
                user.table().editMenuItemProperties(row);
                const auto sheet = user.window()->attachedSheet();
                expectWhole(*sheet);
                user.window()->endSheet(sheet, NSModalResponseCancel);
            }
            // What gets the keyboard comes into sight.
            NSButton& reset = user.button("Reset");
            user.window()->makeFirstResponder(reset.shared_from_this());
            auto& clip = dynamic_cast<NSClipView&>(*reset.superview()->superview());
            EXPECT_LE(reset.frame().maxY(), clip.bounds().maxY());
            EXPECT_EQ(clip.bounds().minY() > 0, c.room.height < user.window()->contentView()->roomySize({}).height);
        }
    }

} // namespace

} // namespace quillbox
