#include "ApplicationBundles.h"

#include "BundleName.h"
#include "MountNamespace.h"
#include "Unprivileged.h"
#include "XdgTree.h"

#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <numeric>
#include <set>

// What becomes of the bundles while something can't be read, written or removed.

namespace quillbox {
namespace {

    namespace fs = std::filesystem;
    using testing::ElementsAre;
    using testing::SizeIs;

    // The applications that people see, by the name of their bundle.
    std::string shown(XdgTree& tree)
    {
        std::set<std::string> names;
        for (const BundleDomain domain : { BundleDomain::system, BundleDomain::local, BundleDomain::user }) {
            for (const auto& entry : fs::directory_iterator(tree.keeper().directory(domain, BundleKind::application))) {
                if (!entry.path().filename().string().starts_with('.'))
                    names.insert(entry.path().stem().string() + ' ');
            }
        }
        return std::accumulate(names.begin(), names.end(), std::string());
    }

    std::string state(const XdgTree& tree)
    {
        return tree.files().readFile("user/quillbox/bundles/state");
    }

    TEST(BundleTrouble, WithoutDescriptorsAllBundlesStayAndAreLookedAtAgainAfterwards)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "A");
        tree.writeApplication("user", "b.desktop", "B", "TryExec=helper");
        tree.writeProgram("helper");
        tree.settle();
        tree.update();
        const std::string before = state(tree);
        tree.writeApplication("system", "c.desktop", "C");
        rlimit usual {};
        getrlimit(RLIMIT_NOFILE, &usual);
        const rlimit none { 0, usual.rlim_max };
        setrlimit(RLIMIT_NOFILE, &none);
        tree.update();
        tree.update();
        setrlimit(RLIMIT_NOFILE, &usual);
        EXPECT_EQ(shown(tree), "A B ");
        EXPECT_THAT(tree.keeper().bundles(), SizeIs(2));
        EXPECT_FALSE(tree.errors.empty());
        EXPECT_EQ(state(tree), before) << "nothing is remembered of a look that saw nothing";
        tree.update();
        EXPECT_EQ(shown(tree), "A B C ");
    }

    // The bundle of an entry that a person may not look for or read stays, what can be read is brought up to date.
    TEST(BundleTrouble, WhatIsRefusedKeepsItsBundlesWhileOthersChange)
    {
        for (const auto& [path, mode] : { std::pair("local/applications", 0),
                                          { "local/applications", 0444 },
                                          { "local/applications/folder", 0 },
                                          { "local/applications/folder/a.desktop", 0 } }) {
            const std::string report = runWithoutPrivileges([path = path, mode = static_cast<mode_t>(mode)] {
                XdgTree tree;
                tree.writeApplication("local", "folder/a.desktop", "A");
                tree.writeApplication("system", "folder-a.desktop", "Less important");
                tree.writeApplication("system", "b.desktop", "B");
                tree.settle();
                tree.update();
                std::string text = shown(tree);
                const std::string before = state(tree);
                chmod(tree.path(path).c_str(), mode);
                tree.writeApplication("system", "c.desktop", "C");
                tree.removeEntry("system", "b.desktop");
                tree.update();
                tree.update();
                text += "| " + shown(tree) + "| " + std::to_string(tree.errors.size()) + " told "
                    + (state(tree) == before ? "not saved " : "saved ");
                chmod(tree.path(path).c_str(), 0755);
                fs::remove_all(tree.path("local/applications"));
                tree.update();
                return text + "| " + shown(tree) + "| " + std::to_string(tree.errors.size());
            });
            EXPECT_EQ(report, "A B | A C | 1 told not saved | C Less important | 1") << path << ' ' << mode;
        }
    }

    TEST(BundleTrouble, ABundleThatCannotBeTakenApartIsNotSeen)
    {
        const std::string report = runWithoutPrivileges([&] {
            XdgTree tree;
            tree.writeApplication("system", "a.desktop", "A");
            tree.update();
            chmod(tree.bundlePath("System/Applications/A.app/Contents").c_str(), 0500);
            tree.removeEntry("system", "a.desktop");
            tree.update();
            tree.update();
            const std::string text = shown(tree) + "| " + std::to_string(tree.errors.size()) + " | ";
            tree.writeApplication("system", "a.desktop", "A");
            tree.update();
            chmod(tree.bundlePath("System/Applications/A.app/Contents").c_str(), 0700);
            return text + shown(tree) + tree.info("System/Applications/A.app", "CFBundleName");
        });
        EXPECT_EQ(report, "| 1 | A A") << "what was left is used again";
    }

    TEST(BundleTrouble, WithoutAPlaceTheRuntimeDirectoryServes)
    {
        XdgTree tree;
        tree.environment.runtimeDirectory = tree.path("run");
        tree.writeApplication("system", "a.desktop", "A");
        tree.files().writeFile("user/quillbox", "a file where a directory should be");
        tree.update();
        const std::string reserve = tree.path("run/quillbox/bundles/System/Applications");
        EXPECT_EQ(tree.keeper().directory(BundleDomain::system, BundleKind::application), reserve);
        EXPECT_EQ(shown(tree), "A ");
        ASSERT_NE(tree.keeper().bundleAt(reserve + "/A.app"), nullptr);
        tree.writeApplication("system", "b.desktop", "B");
        tree.update();
        EXPECT_EQ(shown(tree), "A B ");
        EXPECT_THAT(tree.errors, SizeIs(1)) << "told once";

        fs::remove(tree.path("user/quillbox"));
        tree.update();
        EXPECT_THAT(tree.bundles(), ElementsAre("System/Applications/A.app", "System/Applications/B.app"));
        EXPECT_EQ(tree.keeper().bundleAt(reserve + "/A.app"), nullptr);
        EXPECT_TRUE(fs::is_empty(reserve));
        EXPECT_THAT(tree.errors, SizeIs(1));
    }

    TEST(BundleTrouble, AFullDiskIsNoPlaceUntilItHasRoom)
    {
        if (!MountNamespace::enter())
            return;
        XdgTree tree;
        tree.environment.runtimeDirectory = tree.path("run");
        ASSERT_EQ(mount("none", tree.path("user").c_str(), "tmpfs", 0, "size=256k"), 0);
        tree.writeApplication("system", "a.desktop", "A");
        tree.settle();
        tree.update();
        const std::string picked = tree.bundlePath("System/Applications/A.app");
        std::ofstream(tree.path("user/filler")) << std::string(256 << 10, 'x');
        for (const char* id : { "b", "c", "d" })
            tree.writeApplication("system", std::string(id) + ".desktop", id);
        tree.settle();
        tree.update();
        const unsigned generation = tree.keeper().generation();
        tree.update();
        EXPECT_EQ(tree.keeper().generation(), generation) << "a full disk costs a trial, not another scan";
        EXPECT_EQ(shown(tree), "A b c d ");
        ASSERT_NE(tree.keeper().bundleAt(picked), nullptr) << "what was picked before still opens";
        EXPECT_THAT(tree.errors, SizeIs(1));
        tree.files().remove("user/filler");
        tree.update();
        EXPECT_EQ(tree.keeper().directory(BundleDomain::system, BundleKind::application),
                  tree.bundlePath("System/Applications"));
        EXPECT_EQ(shown(tree), "A b c d ");
        EXPECT_THAT(tree.errors, SizeIs(1));
    }

    TEST(BundleNames, AreTriedThreeTimesABundleHoweverManyAreAlike)
    {
        constexpr int kCount = 3000;
        std::set<std::string> taken;
        int tries = 0;
        BundleNames names([&](const std::string& path) {
            ++tries;
            return taken.insert(path).second;
        });
        // Ids that are alike up to where they are cut.
        for (int number = 0; number < kCount; ++number)
            names.nameIn("/d", "Twin", std::string(150, 'x') + std::to_string(number) + ".desktop", ".app");
        EXPECT_EQ(taken.size(), std::size_t { kCount });
        EXPECT_LE(tries, 3 * kCount);
    }

} // namespace
} // namespace quillbox
