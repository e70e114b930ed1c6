#include "World.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    using Type = MenuItemType;

    TEST(Actions, AMissingPickedFileGetsAnAlertAndIsNotOpened)
    {
        World world;
        world.configure(
            { std::make_shared<MainMenuItem>(Type::arbitraryPath, "lost", "/lost/file"),
              std::make_shared<MainMenuItem>(Type::arbitraryPath, "there", world.files.writeFile("there")) });
        bool reopened = true;
        world.desktop.duringAlert = [&] {
            reopened = world.user().tracking().open(world.controller->statusItem()->menu());
        };
        world.user().open().choose("lost");
        ASSERT_EQ(world.desktop.alerts.size(), 1U);
        const NSAlert& alert = world.desktop.alerts[0];
        EXPECT_EQ(alert.messageText(), "The application \"Quillbox\" could not find this file:\n\n/lost/file\n");
        EXPECT_EQ(alert.informativeText(),
                  "The file existed before.  It may have been deleted, or it might be on an unmounted volume.");
        EXPECT_EQ(alert.windowFrame(), (NSRect { { 100, 200 }, { 600, 150 } }));
        EXPECT_FALSE(reopened) << "while an alert runs no menu opens";
        EXPECT_TRUE(world.workspace.opened.empty());

        world.user().open().choose("there");
        EXPECT_EQ(world.workspace.opened, std::vector { world.files.path("there") });
    }

    TEST(Actions, OfTheFixedRows)
    {
        World world;
        world.configure({ std::make_shared<MainMenuItem>(Type::fixedAppPreferences, ""),
                          std::make_shared<MainMenuItem>(Type::systemSettings, "Settings"),
                          std::make_shared<MainMenuItem>(Type::plaintext, "label") });
        world.user().open().choose("Settings");
        EXPECT_EQ(world.workspace.launched, std::vector<std::string> { "com.apple.systempreferences" });
        world.user().open().choose("label");
        EXPECT_TRUE(world.desktop.alerts.empty() && world.workspace.opened.empty());
        world.user().open().choose("Quillbox Preferences...");
        EXPECT_EQ(world.desktop.shownWindows.calls.back(), "show Quillbox Preferences");
    }

    TEST(Actions, AnEmptyPathIsReportedAndHandedOn)
    {
        World world;
        world.launch();
        NSMenuItemPlus empty;
        world.controller->openTheClickedFile(&empty);
        EXPECT_EQ(World::loggedMessages(),
                  std::vector<std::string> { "This function was executed with an empty sender.pathToOpen" });
        EXPECT_EQ(world.workspace.opened, std::vector<std::string> { "" });
    }

} // namespace

} // namespace quillbox
