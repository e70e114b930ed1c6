#include "PreferencesUser.h"

#include "Bundle.h"
#include "Debug.h"
#include "FrameFiles.h"
#include "MainMenuItemSaver.h"
#include "ManageDefaults.h"
#include "NSTabView.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    using Type = MenuItemType;

    std::shared_ptr<MainMenuItem> item(Type type, const std::string& title)
    {
        return std::make_shared<MainMenuItem>(type, title);
    }

    // The window's list: the fixed row and labels "b", "c", ...
    void configureLabels(int rowCount)
    {
        MainMenuItem::List items { item(Type::fixedAppPreferences, "a") };
        for (int row = 1; row < rowCount; ++row)
            items.push_back(item(Type::plaintext, std::string(1, static_cast<char>('a' + row))));
        MainMenuItem::actualMenuItems() = items;
        ManageDefaults::saveAllToDisk();
    }

    std::vector<std::string> tabLabels(PreferencesUser& user)
    {
        std::vector<std::string> labels;
        for (const auto& tab : user.view<NSTabView>().tabViewItems())
            labels.push_back(tab->label());
        return labels;
    }

    TEST(PreferencesWindow, FramesAtTheSmallestAndTheLargestSize)
    {
        World world;
        ManageDefaults::showDebugTab() = true;
        MainMenuItem::actualMenuItems() = ManageDefaults::defaultMenuItems();
        PreferencesUser user(world);
        const auto window = user.window();
        expectFrames("Window smallest", *window->contentView());
        window->setContentSize({ 9000, 9000 });
        window->layoutIfNeeded();
        expectFrames("Window largest", *window->contentView());
        window->setContentSize({ 10, 10 });
        EXPECT_EQ(window->contentSize(), (NSSize { 520, 650 }));
    }

    TEST(PreferencesWindow, IsOneAndKeepsItsEdits)
    {
        World world;
        configureLabels(3);
        PreferencesUser user(world);
        const auto* const first = user.window().get();
        EXPECT_EQ(user.window()->styleMask(), 11U);
        EXPECT_EQ(user.window()->title(), "Quillbox Preferences");
        EXPECT_FALSE(user.button("Apply").isEnabled());
        ASSERT_TRUE(user.dragRows({ 1 }, 3));
        EXPECT_TRUE(user.button("Apply").isEnabled());

        world.controller->openAppPreferencesWindow(nullptr);
        EXPECT_EQ(user.window().get(), first);
        EXPECT_EQ(world.desktop.activations, 2);
        EXPECT_EQ(user.list(), (std::vector<std::string> { "fixedAppPreferences:a", "plaintext:c", "plaintext:b" }));
        user.press("Cancel");
        EXPECT_FALSE(user.window());
        EXPECT_EQ(world.desktop.shownWindows.calls.back(), "close Quillbox Preferences");
    }

    TEST(PreferencesWindow, OnlyApplyChangesTheMenuAndWhatIsStored)
    {
        struct Case {
            const char* name;
            std::vector<std::string> presses;
            std::vector<std::string> live;
        };
        const std::vector<std::string> before { "Quillbox Preferences...", "b", "c" };
        for (const Case& c : {
                 Case { "cancelled", { "Cancel" }, before },
                 Case { "reset and cancelled", { "Reset", "Cancel" }, before },
                 Case { "applied", { "Apply" }, { "Quillbox Preferences...", "c", "b" } },
                 Case { "reset and applied", { "Reset", "Apply" }, {} },
             }) {
            SCOPED_TRACE(c.name);
            World world;
            configureLabels(3);
            ManageDefaults::loadAllFromDisk();
            PreferencesUser user(world);
            ASSERT_TRUE(user.dragRows({ 1 }, 3));
            for (const std::string& title : c.presses)
                user.press(title);
            EXPECT_FALSE(user.window());
            std::vector<std::string> titles;
            ManageDefaults::loadAllFromDisk();
            for (const auto& each : MainMenuItem::actualMenuItems())
                titles.push_back(each->displayString);
            std::vector<std::string> wanted = c.live;
            if (wanted.empty()) {
                for (const auto& each : ManageDefaults::defaultMenuItems())
                    wanted.push_back(each->displayString);
            }
            EXPECT_EQ(titles, wanted);
        }
    }

    TEST(PreferencesWindow, ReadingAllLeavesTheTentativeListAndEnablesApply)
    {
        World world;
        ManageDefaults::showDebugTab() = true;
        configureLabels(3);
        PreferencesUser user(world);
        const auto list = user.table().tentativeMenuItems;
        user.press("Read Menu-Config Into App");
        EXPECT_EQ(user.table().tentativeMenuItems, list);
        EXPECT_NE(MainMenuItem::actualMenuItems()[1], list[1]);
        EXPECT_TRUE(user.button("Apply").isEnabled());
    }

    TEST(PreferencesWindow, TabsAndTheKeyboard)
    {
        World world;
        {
            PreferencesUser user(world);
            EXPECT_EQ(tabLabels(user), (std::vector<std::string> { "Menus", "About", "Quit" }));
            user.view<NSTabView>().selectTabViewItem(2);
            EXPECT_FALSE(user.window()->firstResponder());
            user.view<NSTabView>().selectTabViewItem(1);
            const auto field = user.controller()->aboutTextField.lock();
            ASSERT_EQ(user.window()->firstResponder(), field);
            EXPECT_EQ(field->currentEditor()->selectedRange(), (NSRange { 0, 0 }));
            user.press("Cancel");
        }
        ManageDefaults::showDebugTab() = true;
        for (int entry = 0; entry < 3; ++entry) {
            PreferencesUser user(world);
            EXPECT_EQ(tabLabels(user).back(), "Error Log (" + std::to_string(entry) + ")");
            const std::string text = user.controller()->errorLogTextField.lock()->stringValue();
            EXPECT_EQ(entry == 0, text == "No Errors");
            EXPECT_EQ(entry == 2, text.find("message\n\n\n") != std::string::npos) << text;
            user.press("Cancel");
            Debug::addErrorLogEntry("A", "b()", "c.cpp", 1, false, "message");
        }
    }

    TEST(PreferencesWindow, TheAboutTextNamesVersionAndLinks)
    {
        ASSERT_TRUE(Bundle::main().bundleIdentifier()) << "the resources are not where the build puts them";
        const AttributedString& text = PreferencesWindowVC::aboutText();
        EXPECT_EQ(text.runs()[0].text, "Quillbox\n");
        EXPECT_EQ(text.runs()[0].attributes.font->weight, FontAttribute::Weight::bold);
        EXPECT_EQ(text.runs()[1].text,
                  "version: " + *Bundle::main().infoString("CFBundleShortVersionString") + "\n"
                      + *Bundle::main().infoString("NSHumanReadableCopyright") + "\n");
        std::size_t links = 0;
        for (const auto& run : text.runs())
            links += run.attributes.link && run.text == "quillbox.example" ? 1 : 0;
        EXPECT_EQ(links, 2U);
    }

    TEST(PreferencesWindow, ErasingAndDeletingThePreferences)
    {
        World world;
        ManageDefaults::showDebugTab() = true;
        configureLabels(3);
        PreferencesUser user(world);
        user.controller()->eraseUserDefaults(nullptr);
        EXPECT_TRUE(world.defaults.dictionaryRepresentation().empty());
        EXPECT_EQ(MainMenuItem::actualMenuItems().size(), 3U);

        ManageDefaults::saveAllToDisk();
        ASSERT_TRUE(world.defaults.synchronize());
        user.press("Delete All Preferences and Quit");
        EXPECT_TRUE(world.desktop.isStopped);
        EXPECT_FALSE(FileManager::defaultManager().fileExists(world.defaults.path()));
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(MainMenuItem::actualMenuItems(), ManageDefaults::defaultMenuItems());
    }

    TEST(PreferencesWindow, StaysWhereApplyingFailed)
    {
        World world;
        configureLabels(3);
        PreferencesUser user(world);
        ASSERT_TRUE(world.defaults.synchronize());
        const std::string stored = world.files.rename("settings", "elsewhere");
        world.files.writeFile("settings", "a file where the directory should be");
        user.dragRowsToTrash({ 1 });
        const auto list = user.list();
        int told = 0;
        world.defaults.setFailureHandler([&](const Error&) { ++told; });
        for (int attempt = 1; attempt <= 2; ++attempt) {
            user.press("Apply");
            ASSERT_TRUE(user.window());
            EXPECT_EQ(user.list(), list);
            EXPECT_TRUE(user.button("Apply").isEnabled());
        }
        EXPECT_EQ(told, 3) << "that it can't be read, and each save";
        EXPECT_EQ(UserDefaults(stored + "/defaults.plist").data("UserPickedMenuItems").has_value(), true);
        world.files.remove("settings");
        user.press("Apply");
        EXPECT_FALSE(user.window());
        EXPECT_EQ(
            MainMenuItemSaver::decodeList(*UserDefaults(world.defaults.path()).data("UserPickedMenuItems"))->size(),
            2U);
    }

    TEST(PreferencesWindow, AReloadInTheBackgroundLeavesItsItems)
    {
        World world;
        configureLabels(2);
        PreferencesUser user(world);
        const auto list = user.table().tentativeMenuItems;
        ManageDefaults::loadAppMenusFromDisk(false);
        ASSERT_NE(MainMenuItem::actualMenuItems()[1], list[1]);
        EXPECT_EQ(user.table().tentativeMenuItems, list);
        list[1]->displayString = "edited";
        user.press("Reset");
        user.table().tentativeMenuItems = list;
        user.press("Apply");
        EXPECT_EQ(MainMenuItem::actualMenuItems()[1]->displayString, "edited");
    }

    TEST(PreferencesWindow, ActionsWhoseTableIsGoneGoOn)
    {
        World world;
        configureLabels(3);
        PreferencesUser user(world);
        const auto controller = user.controller();
        controller->tableWithTentativeMenus.reset();
        user.press("Reset");
        EXPECT_FALSE(user.button("Apply").isEnabled());
        controller->readAllFromUserDefaults(nullptr);
        EXPECT_TRUE(user.button("Apply").isEnabled());
        user.press("Apply");
        EXPECT_FALSE(user.window());
        controller->savePreferences(nullptr);
        EXPECT_EQ(MainMenuItem::actualMenuItems().size(), 3U);
    }

} // namespace

} // namespace quillbox
