#include "MainMenuItemSaver.h"
#include "ManageDefaults.h"
#include "MountNamespace.h"
#include "World.h"

#include <gtest/gtest.h>

#include <iostream>

namespace quillbox {

namespace {

    // What the menu shows of the picked directory "Papers": "PATH: ROW|ROW|", "missing".
    std::string seen(World& world)
    {
        FakeUser person = world.user();
        person.open();
        const auto row = std::dynamic_pointer_cast<NSMenuItemPlus>(person.row("Papers"));
        if (row->isArbitraryPathInaccessible || !row->submenu())
            return "missing";
        person.openSubmenu("Papers");
        return row->pathToOpen() + ": " + World::joinedTitles(person.tracking().menu(1)->itemArray());
    }

    // Opens the menu over a picked directory of the volume, which comes and goes meanwhile.
    void tryVolume(TestVolume& volume, const std::string& directory)
    {
        World world;
        world.directories.home = directory; // on the mount of what a bind mount shows again
        const std::string here = world.files.path("media/stick");
        const std::string there = world.files.path("elsewhere/stick 1");
        ASSERT_TRUE(volume.mount(here));
        world.store({ MainMenuItemSaver(*pickedItem(here + "/Papers")) });
        world.start();
        const std::string rows = "/Papers: letter.txt|";
        EXPECT_EQ(seen(world), here + rows);
        ASSERT_EQ(volume.unmount(), 0) << "Quillbox keeps the volume from being unmounted";
        EXPECT_EQ(seen(world), "missing");
        ASSERT_TRUE(volume.mount(here));
        EXPECT_EQ(seen(world), here + rows);
        ASSERT_EQ(volume.unmount(), 0);
        EXPECT_EQ(seen(world), "missing");
        ASSERT_TRUE(volume.mount(there));
        EXPECT_EQ(seen(world), there + rows);
        // Begins anew from what was saved meanwhile, as after a restart.
        ManageDefaults::fileReferences().clear();
        ManageDefaults::loadAllFromDisk();
        EXPECT_EQ(seen(world), there + rows);
        ASSERT_EQ(volume.unmount(), 0);
        EXPECT_TRUE(World::loggedMessages().empty());
    }

    TEST(Volume, WithAPickedDirectoryComesAndGoesWhileQuillboxRuns)
    {
        if (!MountNamespace::enter())
            return;
        using Kind = TestVolume::Kind;
        int tried = 0;
        for (const Kind kind : { Kind::imageByFuse, Kind::imageOnLoopDevice, Kind::bindMount }) {
            const TemporaryDirectory files;
            files.writeFile("under/several/levels/Papers/letter.txt");
            TestVolume volume(kind, files.path("under/several/levels"), files.path());
            std::cout << "[ volume   ] " << TestVolume::name(kind) << ": "
                      << (volume.reasonItCannotBe().empty() ? "tried" : volume.reasonItCannotBe()) << '\n';
            if (!volume.reasonItCannotBe().empty())
                continue;
            ++tried;
            SCOPED_TRACE(TestVolume::name(kind));
            tryVolume(volume, files.path());
        }
        ASSERT_GT(tried, 0) << "this machine permits none of the volumes";
    }

} // namespace

} // namespace quillbox
