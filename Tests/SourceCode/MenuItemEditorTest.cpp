#include "PreferencesUser.h"

#include "FrameFiles.h"
#include "MenuItemEditorVC.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    using Type = MenuItemType;
    namespace flags = menuOptionFlagsSv;

    // The preferences window with one item below the fixed one, and that item's sheet.
    class Editing {
    public:
        explicit Editing(World& world, std::shared_ptr<MainMenuItem> item) : user(configured(world, std::move(item)))
        {
            open(1);
        }

        void open(int row)
        {
            user.table().editMenuItemProperties(row);
            if (const auto sheet = user.window()->attachedSheet())
                editor = std::dynamic_pointer_cast<MenuItemEditorVC>(sheet->contentViewController());
        }
        bool isOpen() const { return user.window()->attachedSheet() != nullptr; }

        PreferencesUser user;
        std::shared_ptr<MenuItemEditorVC> editor;

    private:
        static PreferencesUser configured(World& world, std::shared_ptr<MainMenuItem> item)
        {
            MainMenuItem::actualMenuItems() = { std::make_shared<MainMenuItem>(Type::fixedAppPreferences),
                                                std::move(item) };
            return PreferencesUser(world);
        }
    };

    TEST(MenuItemEditor, FramesOfEachKind)
    {
        World world;
        const std::string directory = world.files.path();
        const auto picked = [](const std::optional<URL>& url) {
            return std::make_shared<MainMenuItem>(Type::arbitraryPath, "Papers", "/home/a/Papers", url);
        };
        struct Case {
            const char* name;
            std::shared_ptr<MainMenuItem> item;
        };
        for (const Case& c : {
                 Case { "fixedAppPreferences", std::make_shared<MainMenuItem>(Type::fixedAppPreferences) },
                 Case { "systemSettings", std::make_shared<MainMenuItem>(Type::systemSettings) },
                 Case { "plaintext", std::make_shared<MainMenuItem>(Type::plaintext) },
                 Case { "arbitraryPath directory", picked(URL::fileURLWithPath(directory)) },
                 Case { "arbitraryPath file", picked(URL::fileURLWithPath("/dev/null")) },
                 Case { "arbitraryPath missing", picked({}) },
                 Case { "recentItems", std::make_shared<MainMenuItem>(Type::recentItems) },
                 Case { "systemApplicationsDirectory",
                        std::make_shared<MainMenuItem>(Type::systemApplicationsDirectory) },
                 Case { "other", std::make_shared<MainMenuItem>(Type::other) },
             }) {
            Editing editing(world, c.item);
            ASSERT_TRUE(editing.editor) << c.name;
            EXPECT_EQ(editing.editor->view()->window()->styleMask(), 1U);
            expectFrames(std::string("Editor ") + c.name, *editing.editor->view());
            editing.user.window()->close();
        }
    }

    TEST(MenuItemEditor, SavesWhatIsSetAndNothingElse)
    {
        World world;
        const auto item = std::make_shared<MainMenuItem>(Type::recentItemsDocs, "");
        item->maxNumberOfRecentItems = 7;
        item->optionFlagsSv =
            MenuOptionFlagsSv(flags::ignoreArticles.rawValue() | flags::sortByDate.rawValue() | 1U << 20);
        Editing editing(world, item);
        EXPECT_EQ(editing.editor->displayStringEditTextField.lock()->stringValue(), "recentItemsDocs");
        EXPECT_EQ(editing.editor->maxNumberOfItemsMenu.lock()->titleOfSelectedItem(), "10");
        editing.editor->sortByDateCheckbox.lock()->performClick();
        editing.editor->showPathAsTooltipCheckbox.lock()->performClick();
        editing.user.press("Use this Setting");
        EXPECT_FALSE(editing.isOpen());
        EXPECT_EQ(item->displayString, "recentItemsDocs");
        EXPECT_EQ(item->maxNumberOfRecentItems, 10);
        EXPECT_EQ(item->optionFlagsSv.rawValue(),
                  flags::ignoreArticles.rawValue() | flags::showPathAsTooltip.rawValue() | 1U << 20);
        EXPECT_TRUE(editing.user.button("Apply").isEnabled());
    }

    TEST(MenuItemEditor, APlainTextBecomesEnabled)
    {
        World world;
        const auto item = std::make_shared<MainMenuItem>(Type::plaintext, "x", std::nullopt, std::nullopt,
                                                         flags::showPlaintextAsDisabled);
        Editing editing(world, item);
        EXPECT_FALSE(editing.editor->showPlaintextAsEnabledCheckbox.lock()->isOn());
        editing.editor->showPlaintextAsEnabledCheckbox.lock()->performClick();
        editing.editor->displayStringEditTextField.lock()->userEdits("");
        editing.user.press("Use this Setting");
        EXPECT_TRUE(item->optionFlagsSv.isEmpty());
        EXPECT_EQ(item->displayString, "");
    }

    TEST(MenuItemEditor, DiscardsAndSurvivesWhatIsGone)
    {
        World world;
        const auto item = std::make_shared<MainMenuItem>(Type::plaintext, "x");
        Editing editing(world, item);
        editing.editor->displayStringEditTextField.lock()->userEdits("y");
        editing.user.window()->performClose(nullptr);
        EXPECT_TRUE(editing.user.window()) << "the sheet is answered first";
        editing.user.press("Cancel");
        EXPECT_EQ(item->displayString, "x");
        EXPECT_FALSE(editing.user.button("Apply").isEnabled());

        editing.open(0);
        editing.user.press("OK");
        EXPECT_FALSE(editing.user.button("Apply").isEnabled());
        // The item goes while it is edited.
        editing.open(1);
        editing.editor->menuItemToEdit.reset();
        editing.user.press("Use this Setting");
        EXPECT_TRUE(editing.user.button("Apply").isEnabled());
        // Rows that are not there, and separators.
        for (const int row : { -1, 2 })
            editing.user.table().editMenuItemProperties(row);
        editing.user.table().tentativeMenuItems[1] = std::make_shared<MainMenuItem>(Type::separator);
        editing.user.table().editMenuItemProperties(1);
        EXPECT_FALSE(editing.isOpen());
        EXPECT_EQ(
            World::loggedMessages(),
            std::vector<std::string> { "tentativeMenuItems only has 2 rows, but rowNum=2 is somehow being edited?" });
    }

} // namespace

} // namespace quillbox
