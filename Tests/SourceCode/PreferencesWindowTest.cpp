#include "PreferencesUser.h"

#include "AppDelegate.h"
#include "Bundle.h"
#include "Debug.h"
#include "FrameFiles.h"
#include "ManageDefaults.h"
#include "NSTabView.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillbox {

namespace {

    std::vector<std::string> tabLabels(PreferencesUser& user)
    {
        std::vector<std::string> labels;
        for (const auto& tab : user.view<NSTabView>().tabViewItems())
            labels.push_back(tab->label());
        return labels;
    }

    TEST(PreferencesWindow, FramesAtTheSmallestAndTheLargestSize)
    {
        PreferencesUser user;
        ManageDefaults::showDebugTab() = true;
        user.open(ManageDefaults::defaultMenuItems());
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
        PreferencesUser user(labels("bc"));
        const auto* const first = user.window().get();
        EXPECT_EQ(user.window()->styleMask(), 11U);
        ASSERT_TRUE(user.dragRows({ 1 }, 3));
        EXPECT_TRUE(user.button("Apply").isEnabled());

        user.open();
        EXPECT_EQ(user.window().get(), first);
        EXPECT_EQ(user.world.desktop.activations, 2);
        EXPECT_EQ(user.letters(), "cB");
        user.press("Cancel");
        EXPECT_FALSE(user.window());
        EXPECT_EQ(user.world.desktop.shownWindows.calls.back(), "close Quillbox Preferences");
    }

    TEST(PreferencesWindow, OnlyApplyChangesTheMenuAndWhatIsStored)
    {
        struct Case {
            const char* name;
            std::vector<std::string> presses;
            const char* stored;
        };
        for (const Case& c : {
                 Case { "cancelled", { "Cancel" }, "bc" },
                 Case { "reset and cancelled", { "Reset", "Cancel" }, "bc" },
                 Case { "applied", { "Apply" }, "cb" },
                 Case { "reset and applied", { "Reset", "Apply" }, "-s-a" },
             }) {
            SCOPED_TRACE(c.name);
            PreferencesUser user(labels("bc"));
            ASSERT_TRUE(user.dragRows({ 1 }, 3));
            for (const std::string& title : c.presses)
                user.press(title);
            EXPECT_FALSE(user.window());
            ManageDefaults::loadAllFromDisk();
            user.open();
            EXPECT_EQ(user.letters(), c.stored);
        }
    }

    TEST(PreferencesWindow, ItsListIsItsOwn)
    {
        PreferencesUser user;
        ManageDefaults::showDebugTab() = true;
        user.open(labels("b"));
        const auto list = user.table().tentativeMenuItems;
        user.press("Read Menu-Config Into App");
        ASSERT_NE(MainMenuItem::actualMenuItems()[1], list[1]) << "the menu's items are new ones";
        EXPECT_EQ(user.table().tentativeMenuItems, list);
        EXPECT_TRUE(user.button("Apply").isEnabled());
        list[1]->displayString = "edited";
        user.press("Apply");
        EXPECT_EQ(MainMenuItem::actualMenuItems()[1]->displayString, "edited");
    }

    TEST(PreferencesWindow, ShowsATextFromItsBeginning)
    {
        PreferencesUser user(labels(""));
        EXPECT_EQ(tabLabels(user), (std::vector<std::string> { "Menus", "About", "Quit" }));
        user.view<NSTabView>().selectTabViewItem(2);
        EXPECT_FALSE(user.window()->firstResponder());
        user.view<NSTabView>().selectTabViewItem(1);
        const auto field = user.controller()->aboutTextField.lock();
        ASSERT_EQ(user.window()->firstResponder(), field);
        EXPECT_EQ(field->currentEditor()->selectedRange(), (NSRange { 0, 0 }));
    }

    TEST(PreferencesWindow, TheErrorLogHasItsTab)
    {
        PreferencesUser user;
        ManageDefaults::showDebugTab() = true;
        for (int entry = 0; entry < 3; ++entry) {
            user.open();
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
        EXPECT_EQ(text.runs()[1].text,
                  "version: " + *Bundle::main().infoString("CFBundleShortVersionString") + "\n"
                      + *Bundle::main().infoString("NSHumanReadableCopyright") + "\n");
        EXPECT_EQ(std::ranges::count_if(text.runs(), [](const auto& run) { return run.attributes.link.has_value(); }),
                  2);
    }

    TEST(PreferencesWindow, ErasingAndDeletingThePreferences)
    {
        PreferencesUser user;
        ManageDefaults::showDebugTab() = true;
        user.open(labels("bc"));
        user.controller()->eraseUserDefaults(nullptr);
        EXPECT_TRUE(user.world.defaults.dictionaryRepresentation().empty());

        ManageDefaults::saveAllToDisk();
        ASSERT_TRUE(user.world.defaults.synchronize());
        user.press("Delete All Preferences and Quit");
        EXPECT_TRUE(user.world.desktop.isStopped);
        EXPECT_FALSE(FileManager::defaultManager().fileExists(user.world.defaults.path()));
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(MainMenuItem::actualMenuItems(), ManageDefaults::defaultMenuItems());
    }

    TEST(PreferencesWindow, SaysThatDeletingThePreferencesFailedBeforeItQuits)
    {
        PreferencesUser user;
        ManageDefaults::showDebugTab() = true;
        user.open(labels("bc"));
        World& world = user.world;
        ASSERT_TRUE(world.defaults.synchronize());
        NSApplication::shared().setDelegate(std::make_shared<AppDelegate>());
        world.start();
        world.files.rename("settings/defaults.plist", "elsewhere");
        world.files.makeDirectory("settings/defaults.plist");
        world.desktop.duringAlert = [&] { EXPECT_FALSE(world.desktop.isStopped); };
        user.press("Delete All Preferences and Quit");
        NSApplication::shared().setDelegate(nullptr);
        EXPECT_TRUE(world.desktop.isStopped);
        ASSERT_EQ(world.desktop.alerts.size(), 1U);
        EXPECT_EQ(world.desktop.alerts[0].informativeText(),
                  "couldn't delete the settings \"" + world.defaults.path() + "\": Is a directory");
    }

    TEST(PreferencesWindow, StaysWhereApplyingFailed)
    {
        PreferencesUser user(labels("bc"));
        World& world = user.world;
        ASSERT_TRUE(world.defaults.synchronize());
        const std::string stored = world.files.rename("settings", "elsewhere");
        world.files.writeFile("settings", "a file where the directory should be");
        user.dragRowsToTrash({ 1 });
        int told = 0;
        world.defaults.setFailureHandler([&](const Error&) { ++told; });
        for (int attempt = 1; attempt <= 2; ++attempt) {
            user.press("Apply");
            ASSERT_TRUE(user.window());
            EXPECT_EQ(user.letters(), "c");
            EXPECT_TRUE(user.button("Apply").isEnabled());
        }
        EXPECT_EQ(told, 3) << "that it can't be read, and each save";
        EXPECT_TRUE(UserDefaults(stored + "/defaults.plist").data("UserPickedMenuItems"));
        world.files.remove("settings");
        user.press("Apply");
        EXPECT_FALSE(user.window());
        EXPECT_EQ(world.storedRecords().size(), 2U);
    }

} // namespace

} // namespace quillbox
