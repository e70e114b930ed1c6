#include "PreferencesUser.h"

#include "FrameFiles.h"
#include "MenuItemEditorVC.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    using Type = MenuItemType;
    namespace flags = menuOptionFlagsSv;

    // The preferences window with one item below the fixed one, and that item's sheet.
    class Editing : public PreferencesUser {
    public:
        explicit Editing(std::shared_ptr<MainMenuItem> edited)
            : PreferencesUser({ item(Type::fixedAppPreferences), std::move(edited) })
        {
            edit(1);
        }
        void edit(int row)
        {
            table().editMenuItemProperties(row);
            if (const auto sheet = window()->attachedSheet())
                editor = std::dynamic_pointer_cast<MenuItemEditorVC>(sheet->contentViewController());
        }

        std::shared_ptr<MenuItemEditorVC> editor;
    };

    TEST(MenuItemEditor, FramesOfEachKind)
    {
        const auto picked = [](const std::optional<URL>& url) {
            return std::make_shared<MainMenuItem>(Type::arbitraryPath, "Papers", "/home/a/Papers", url);
        };
        struct Case {
            const char* name;
            std::shared_ptr<MainMenuItem> item;
        };
        for (const Case& c : {
                 Case { "fixedAppPreferences", item(Type::fixedAppPreferences) },
                 Case { "systemSettings", item(Type::systemSettings) },
                 Case { "plaintext", item(Type::plaintext) },
                 Case { "arbitraryPath directory", picked(URL::fileURLWithPath("/dev")) },
                 Case { "arbitraryPath file", picked(URL::fileURLWithPath("/dev/null")) },
                 Case { "arbitraryPath missing", picked({}) },
                 Case { "recentItems", item(Type::recentItems) },
                 Case { "systemApplicationsDirectory", item(Type::systemApplicationsDirectory) },
                 Case { "other", item(Type::other) },
             }) {
            Editing user(c.item);
            ASSERT_TRUE(user.editor) << c.name;
            expectFrames(std::string("Editor ") + c.name, *user.editor->view());
        }
    }

    TEST(MenuItemEditor, SavesWhatIsSetAndNothingElse)
    {
        const auto edited = item(Type::recentItemsDocs, "");
        edited->maxNumberOfRecentItems = 7;
        edited->optionFlagsSv =
            MenuOptionFlagsSv(flags::ignoreArticles.rawValue() | flags::sortByDate.rawValue() | 1U << 20);
        Editing user(edited);
        EXPECT_EQ(user.editor->displayStringEditTextField.lock()->stringValue(), "recentItemsDocs");
        EXPECT_EQ(user.editor->maxNumberOfItemsMenu.lock()->titleOfSelectedItem(), "10");
        user.editor->sortByDateCheckbox.lock()->performClick();
        user.editor->showPathAsTooltipCheckbox.lock()->performClick();
        EXPECT_EQ(user.button("Use this Setting").keyEquivalent(), "\r");
        user.press("Use this Setting");
        EXPECT_FALSE(user.window()->attachedSheet());
        EXPECT_EQ(edited->displayString, "recentItemsDocs");
        EXPECT_EQ(edited->maxNumberOfRecentItems, 10);
        EXPECT_EQ(edited->optionFlagsSv.rawValue(),
                  flags::ignoreArticles.rawValue() | flags::showPathAsTooltip.rawValue() | 1U << 20);
        EXPECT_TRUE(user.button("Apply").isEnabled());
    }

    TEST(MenuItemEditor, APlainTextBecomesEnabled)
    {
        const auto edited = item(Type::plaintext, "x", flags::showPlaintextAsDisabled);
        Editing user(edited);
        EXPECT_FALSE(user.editor->showPlaintextAsEnabledCheckbox.lock()->isOn());
        user.editor->showPlaintextAsEnabledCheckbox.lock()->performClick();
        user.editor->displayStringEditTextField.lock()->userEdits("");
        user.press("Use this Setting");
        EXPECT_TRUE(edited->optionFlagsSv.isEmpty());
        EXPECT_EQ(edited->displayString, "");
    }

    TEST(MenuItemEditor, CancelledChangesNothing)
    {
        const auto edited = item(Type::plaintext, "x");
        Editing user(edited);
        user.editor->displayStringEditTextField.lock()->userEdits("y");
        user.window()->performClose(nullptr);
        EXPECT_TRUE(user.window()) << "the sheet is answered first";
        user.press("Cancel");
        EXPECT_EQ(edited->displayString, "x");
        EXPECT_FALSE(user.button("Apply").isEnabled());
    }

    TEST(MenuItemEditor, IsNotThereForSeparatorsAndHasNothingToSaveForTheFixedRow)
    {
        Editing user(item(Type::separator));
        EXPECT_FALSE(user.window()->attachedSheet());
        user.edit(0);
        user.press("OK");
        EXPECT_FALSE(user.button("Apply").isEnabled());
    }

} // namespace

} // namespace quillbox
