#include "World.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    using Type = MenuItemType;

    class Actions : public WorldTest { };

    TEST_F(Actions, AMissingPickedFileGetsAnAlertAndIsNotOpened)
    {
        const std::string there = world.files.writeFile("there");
        world.configure({ std::make_shared<MainMenuItem>(Type::arbitraryPath, "lost", "/lost/file"),
                          std::make_shared<MainMenuItem>(Type::arbitraryPath, "there", there) });
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
        EXPECT_EQ(world.workspace.opened, std::vector { there });
    }

    TEST_F(Actions, APickedFileWithoutAPathIsReportedToo)
    {
        world.configure({ std::make_shared<MainMenuItem>(Type::arbitraryPath, "nowhere", "") });
        world.user().open().choose("nowhere");
        EXPECT_EQ(World::loggedMessages().back(), "This function was executed with an empty sender.pathToOpen");
        EXPECT_EQ(world.desktop.alerts.size(), 1U);
    }

    TEST_F(Actions, OfTheFixedRows)
    {
        world.configure({ item(Type::fixedAppPreferences), item(Type::systemSettings, "Settings"),
                          item(Type::plaintext, "label") });
        world.user().open().choose("Settings");
        EXPECT_EQ(world.workspace.launched, std::vector<std::string> { "com.apple.systempreferences" });
        world.user().open().choose("label");
        EXPECT_TRUE(world.desktop.alerts.empty() && world.workspace.opened.empty());
        world.user().open().choose("Quillbox Preferences...");
        EXPECT_EQ(world.desktop.shownWindows.calls.back(), "show Quillbox Preferences");
    }

} // namespace

} // namespace quillbox
