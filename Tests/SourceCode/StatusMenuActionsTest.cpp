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

    TEST_F(Actions, OfTheMenuOfARow)
    {
        const std::string file = world.files.writeFile("a b.txt");
        world.configure(
            { std::make_shared<MainMenuItem>(Type::arbitraryPath, "file", file),
              std::make_shared<MainMenuItem>(Type::arbitraryPath, "package", world.files.makeDirectory("A.app")),
              std::make_shared<MainMenuItem>(Type::arbitraryPath, "lost", "/lost/file"),
              item(Type::fixedAppPreferences) });
        world.workspace.known = { { "reader", "Reader", {} } };
        FakeUser user = world.user();
        EXPECT_EQ(user.open().openItemMenu("file").sees(),
                  "Open (openTheRowWithSender:)\nOpen With >\n---\n"
                  "Show in File Manager (showTheRowWithSender:)\nCopy Path (copyThePathWithSender:)\n");
        user.choose("Open");
        user.open().openItemMenu("file").openSubmenu("Open With").choose("Reader");
        EXPECT_EQ(world.workspace.opened, (std::vector { file, file + " with reader" }));
        user.open().openItemMenu("file").choose("Show in File Manager");
        user.open().choose("file", MenuTracking::Choice::alternate);
        EXPECT_EQ(world.workspace.shown, (std::vector { file, file }));
        user.open().openItemMenu("file").choose("Copy Path");
        EXPECT_EQ(world.desktop.clipboard, file);

        world.workspace.known.clear();
        EXPECT_EQ(user.open().openItemMenu("file").openSubmenu("Open With").sees(), "No Application Found -\n");
        user.close();
        EXPECT_FALSE(user.open().openItemMenu("package").row("Open With"));
        user.close();
        user.open().openItemMenu("lost").choose("Show in File Manager");
        EXPECT_EQ(world.desktop.alerts.size(), 1U);
        EXPECT_FALSE(user.open().tracking().openMenuForItem(0, user.row("Quillbox Preferences...")));
    }

    TEST_F(Actions, APathThatIsNoTextIsCopiedAsAURL)
    {
        world.configure({ std::make_shared<MainMenuItem>(Type::arbitraryPath, "odd", world.files.writeFile("\xff")) });
        world.user().open().openItemMenu("odd").choose("Copy Path");
        EXPECT_EQ(world.desktop.clipboard, "file://" + world.files.path("%FF"));
    }

} // namespace

} // namespace quillbox
