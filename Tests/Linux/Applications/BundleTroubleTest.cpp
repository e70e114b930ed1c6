#include "ApplicationBundles.h"

#include "BundleName.h"
#include "MountNamespace.h"
#include "Unprivileged.h"
#include "XdgTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <set>

// What becomes of the bundles while something can't be read, written or removed.

namespace quillbox {
namespace {

    namespace fs = std::filesystem;
    using testing::ElementsAre;
    using testing::SizeIs;

    const std::string kState = "user/quillbox/bundles/state";

    // The applications that people see, by the name of their bundle.
    std::string shown(const ApplicationBundles& bundles)
    {
        std::set<std::string> names;
        for (const BundleDomain domain : { BundleDomain::system, BundleDomain::local, BundleDomain::user }) {
            for (const auto& entry : fs::directory_iterator(bundles.directory(domain, BundleKind::application))) {
                if (!entry.path().filename().string().starts_with('.'))
                    names.insert(entry.path().stem());
            }
        }
        std::string text;
        for (const std::string& name : names)
            text += name + ' ';
        return text;
    }

    // While it lives, this process can open no file.
    class NoDescriptors {
    public:
        NoDescriptors()
        {
            getrlimit(RLIMIT_NOFILE, &before_);
            const rlimit none { 0, before_.rlim_max };
            setrlimit(RLIMIT_NOFILE, &none);
        }
        ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
        NoDescriptors(const NoDescriptors&) = delete;
        NoDescriptors& operator=(const NoDescriptors&) = delete;

    private:
        rlimit before_ {};
    };

    TEST(BundleTrouble, WithoutDescriptorsAllBundlesStayAndAreLookedAtAgainAfterwards)
    {
        XdgTree tree;
        tree.writeApplication("system", "a.desktop", "A");
        tree.writeApplication("user", "b.desktop", "B", "TryExec=helper");
        tree.writeProgram("helper");
        tree.settle();
        ErrorLog log;
        ApplicationBundles bundles(tree.environment, log.callback());
        bundles.bringUpToDate();
        const std::string state = tree.files().readFile(kState);
        tree.writeApplication("system", "c.desktop", "C");
        {
            const NoDescriptors none;
            bundles.bringUpToDate();
            bundles.bringUpToDate();
        }
        EXPECT_EQ(shown(bundles), "A B ");
        EXPECT_THAT(bundles.bundles(), SizeIs(2));
        EXPECT_FALSE(log.errors.empty());
        EXPECT_EQ(tree.files().readFile(kState), state) << "nothing is remembered of a look that saw nothing";
        bundles.bringUpToDate();
        EXPECT_EQ(shown(bundles), "A B C ");
    }

    struct Refusal {
        const char* name;
        // Refused to an ordinary person, by this mode, while other things change.
        const char* path;
        mode_t mode;
        // What is seen then: the bundle of "a.desktop" stays, what can be read is brought up to date.
        const char* seen;
        friend void PrintTo(const Refusal& row, std::ostream* out) { *out << row.name; }
    };

    class UnreadSource : public testing::TestWithParam<Refusal> { };

    TEST_P(UnreadSource, KeepsItsBundlesWhileOthersChange)
    {
        const Refusal& row = GetParam();
        const std::string report = runWithoutPrivileges([&] {
            const XdgTree tree;
            tree.writeApplication("local", "folder/a.desktop", "A");
            tree.writeApplication("system", "folder-a.desktop", "Less important");
            tree.writeApplication("system", "b.desktop", "B");
            tree.settle();
            ErrorLog log;
            ApplicationBundles bundles(tree.environment, log.callback());
            bundles.bringUpToDate();
            std::string text = shown(bundles);
            const std::string state = tree.files().readFile(kState);
            chmod(tree.path(row.path).c_str(), row.mode);
            tree.writeApplication("system", "c.desktop", "C");
            tree.removeEntry("system", "b.desktop");
            bundles.bringUpToDate();
            bundles.bringUpToDate();
            text += "| " + shown(bundles) + "| " + std::to_string(log.errors.size()) + " told "
                + (tree.files().readFile(kState) == state ? "not saved " : "saved ");
            chmod(tree.path(row.path).c_str(), 0755);
            fs::remove_all(tree.path("local/applications"));
            bundles.bringUpToDate();
            return text + "| " + shown(bundles) + "| " + std::to_string(log.errors.size());
        });
        EXPECT_EQ(report, std::string("A B | ") + row.seen + "| 1 told not saved | C Less important | 1");
    }

    // clang-format off
    INSTANTIATE_TEST_SUITE_P(Table, UnreadSource, testing::Values(
        Refusal { "Directory", "local/applications", 0, "A C " },
        Refusal { "DirectoryThatCanOnlyBeListed", "local/applications", 0444, "A C " },
        Refusal { "Folder", "local/applications/folder", 0, "A C " },
        Refusal { "Entry", "local/applications/folder/a.desktop", 0, "A C " }),
        [](const auto& row) { return std::string(row.param.name); });
    // clang-format on

    TEST(BundleTrouble, ABundleThatCannotBeTakenApartIsNotSeen)
    {
        const std::string report = runWithoutPrivileges([&] {
            const XdgTree tree;
            tree.writeApplication("system", "a.desktop", "A");
            ErrorLog log;
            ApplicationBundles bundles(tree.environment, log.callback());
            bundles.bringUpToDate();
            chmod(tree.bundlePath("System/Applications/A.app/Contents").c_str(), 0500);
            tree.removeEntry("system", "a.desktop");
            bundles.bringUpToDate();
            bundles.bringUpToDate();
            const std::string text = shown(bundles) + "| " + std::to_string(log.errors.size()) + " | ";
            tree.writeApplication("system", "a.desktop", "A");
            bundles.bringUpToDate();
            chmod(tree.bundlePath("System/Applications/A.app/Contents").c_str(), 0700);
            return text + shown(bundles) + tree.info("System/Applications/A.app", "CFBundleName");
        });
        EXPECT_EQ(report, "| 1 | A A") << "what was left is used again";
    }

    TEST(BundleTrouble, WithoutAPlaceTheRuntimeDirectoryServes)
    {
        XdgTree tree;
        tree.environment.runtimeDirectory = tree.path("run");
        tree.writeApplication("system", "a.desktop", "A");
        tree.files().writeFile("user/quillbox", "a file where a directory should be");
        ErrorLog log;
        ApplicationBundles bundles(tree.environment, log.callback());
        bundles.bringUpToDate();
        const std::string reserve = tree.path("run/quillbox/bundles/System/Applications");
        EXPECT_EQ(bundles.directory(BundleDomain::system, BundleKind::application), reserve);
        EXPECT_EQ(shown(bundles), "A ");
        ASSERT_NE(bundles.bundleAt(reserve + "/A.app"), nullptr);
        tree.writeApplication("system", "b.desktop", "B");
        bundles.bringUpToDate();
        EXPECT_EQ(shown(bundles), "A B ");
        EXPECT_THAT(log.errors, SizeIs(1)) << "told once";

        fs::remove(tree.path("user/quillbox"));
        bundles.bringUpToDate();
        EXPECT_THAT(tree.bundles(), ElementsAre("System/Applications/A.app", "System/Applications/B.app"));
        EXPECT_EQ(bundles.bundleAt(reserve + "/A.app"), nullptr);
        EXPECT_TRUE(fs::is_empty(reserve));
        EXPECT_THAT(log.errors, SizeIs(1));
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
        ErrorLog log;
        ApplicationBundles bundles(tree.environment, log.callback());
        bundles.bringUpToDate();
        const std::string picked = tree.bundlePath("System/Applications/A.app");
        std::ofstream(tree.path("user/filler")) << std::string(256 << 10, 'x');
        for (const char* id : { "b", "c", "d" })
            tree.writeApplication("system", std::string(id) + ".desktop", id);
        tree.settle();
        bundles.bringUpToDate();
        const unsigned generation = bundles.generation();
        bundles.bringUpToDate();
        EXPECT_EQ(bundles.generation(), generation) << "a full disk costs a trial, not another scan";
        EXPECT_EQ(shown(bundles), "A b c d ");
        ASSERT_NE(bundles.bundleAt(picked), nullptr) << "what was picked before still opens";
        EXPECT_THAT(log.errors, SizeIs(1));
        tree.files().remove("user/filler");
        bundles.bringUpToDate();
        EXPECT_EQ(bundles.directory(BundleDomain::system, BundleKind::application),
                  tree.bundlePath("System/Applications"));
        EXPECT_EQ(shown(bundles), "A b c d ");
        EXPECT_THAT(log.errors, SizeIs(1));
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
