#include "ManageDefaults.h"
#include "World.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>

// Settings files as another program writes and reads them: Python's plistlib.

namespace quillbox {

namespace {

    std::string python(const std::string& arguments)
    {
        const std::string command =
            "python3 \"" QUILLBOX_SOURCE_DIR "/Tests/SourceCode/plist_records.py\" " + arguments;
        std::FILE* output = popen(command.c_str(), "r"); // NOLINT(cert-env33-c)
        std::string text;
        std::array<char, 4096> buffer {};
        while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), output))
            text.append(buffer.data(), count);
        EXPECT_EQ(pclose(output), 0) << command;
        return text;
    }

    void writeSettings(World& world, int version)
    {
        std::filesystem::create_directories(world.files.path("settings"));
        python("write \"" + world.defaults.path() + "\" " + std::to_string(version));
        ManageDefaults::loadAllFromDisk();
    }

    TEST(Plistlib, ItsCurrentRecordsLoadWhole)
    {
        World world;
        writeSettings(world, 2);
        EXPECT_TRUE(ManageDefaults::showDebugTab());
        EXPECT_TRUE(World::loggedMessages().empty());
        const auto& items = MainMenuItem::actualMenuItems();
        ASSERT_EQ(items.size(), kMenuItemTypeCount);
        for (std::size_t index = 0; index < items.size(); ++index) {
            const MainMenuItem& item = *items[index];
            EXPECT_EQ(item.menuItemType, static_cast<MenuItemType>(index));
            if (index > 1) {
                EXPECT_EQ(item.displayString, std::string(rawValue(item.menuItemType)) + " \u00E9\U0001F600");
                EXPECT_EQ(item.optionFlagsSv.rawValue(), (std::uint64_t { 1 } << 63) + index);
            }
            if (isRecentItemsKind(item.menuItemType)) {
                EXPECT_EQ(item.maxNumberOfRecentItems, -static_cast<std::int64_t>(index));
                EXPECT_EQ(item.noRecentItemsOlderThan->description(),
                          index % 2 ? "2100-02-03 04:05:06 +0000" : "0001-02-03 04:05:06 +0000");
            }
        }
    }

    TEST(Plistlib, ReadsWhatIsSavedKeyForKey)
    {
        World world;
        writeSettings(world, 2);
        MainMenuItem::actualMenuItems().resize(7);
        ManageDefaults::saveAllToDisk();
        ASSERT_TRUE(world.defaults.synchronize());
        const std::string text = python("read \"" + world.defaults.path() + "\"");
        EXPECT_TRUE(
            text.starts_with("[('MenuSaveVersion', 'int'), ('ShowDebugTab', 'bool')]\nTrue fixedAppPreferences 0 0 "))
            << text;
        EXPECT_NE(text.find("True arbitraryPath 9223372036854775813 0 "), std::string::npos) << text;
        EXPECT_NE(
            text.find("True recentItems 9223372036854775814 -6 0001-02-03 04:05:06 'recentItems \\xe9\\U0001f600'"),
            std::string::npos)
            << text;
    }

    TEST(Plistlib, ItsOldRecordsAreUpgraded)
    {
        World world;
        writeSettings(world, 1);
        ASSERT_EQ(MainMenuItem::actualMenuItems().size(), kMenuItemTypeCount);
        EXPECT_EQ(MainMenuItem::actualMenuItems()[4]->optionFlagsSv.rawValue(), 3U);
        ManageDefaults::saveAllToDisk();
        EXPECT_EQ(world.defaults.integer("MenuSaveVersion"), 2);
        EXPECT_FALSE(world.defaults.object("saveVersion"));
    }

} // namespace

} // namespace quillbox
