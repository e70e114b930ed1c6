#include "FaultInjector.h"
#include "XdgTree.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>

using namespace quillbox;

// An update of the application bundles with one fault in it, at each of its system calls in turn. One entry is new, one
// has another name and one is gone.

namespace {

void prepare(XdgTree& tree)
{
    for (const char* name : { "a.desktop", "b.desktop", "c.desktop" })
        tree.writeApplication("system", name, std::string(name, 1));
    tree.settle();
    ApplicationBundles(tree.environment, [](const Error&) {}).bringUpToDate();
    tree.writeApplication("system", "b.desktop", "renamed");
    tree.removeEntry("system", "c.desktop");
    tree.writeApplication("system", "d.desktop", "d");
    tree.settle();
}

std::string update(const XdgTree& tree)
{
    int told = 0;
    ApplicationBundles(tree.environment, [&](const Error&) { ++told; }).bringUpToDate();
    return std::to_string(told);
}

bool hasBundle(const std::vector<std::string>& bundles, const std::string& title)
{
    return std::find(bundles.begin(), bundles.end(), "System/Applications/" + title + ".app") != bundles.end();
}

// With none the update is killed.
class FaultyBundleUpdate : public testing::TestWithParam<std::optional<int>> { };

TEST_P(FaultyBundleUpdate, KeepsWholeBundlesIsToldAndIsFinishedByTheNext)
{
    XdgTree whole;
    prepare(whole);
    const int callCount = runWithFault(std::nullopt, [&] { return update(whole); }).callCount;
    ASSERT_GT(callCount, 40);
    const std::vector<std::string> expected = whole.bundles();
    ASSERT_TRUE(hasBundle(expected, "renamed") && hasBundle(expected, "d") && !hasBundle(expected, "c"));
    int toldCount = 0;
    for (int call = 1; call <= callCount; ++call) {
        SCOPED_TRACE(call);
        XdgTree tree;
        prepare(tree);
        const FaultRun run = runWithFault(Fault { call, GetParam() }, [&] { return update(tree); });
        const bool wasTold = !run.wasKilled && run.report != "0";
        ASSERT_EQ(run.wasKilled, !GetParam());
        toldCount += wasTold ? 1 : 0;
        const std::vector<std::string> bundles = tree.bundles();
        EXPECT_TRUE(run.wasKilled || wasTold || bundles == expected);
        EXPECT_TRUE(hasBundle(bundles, "a"));
        EXPECT_TRUE(hasBundle(bundles, "b") || hasBundle(bundles, "renamed"));
        for (const char* title : { "a", "b", "renamed", "d" }) {
            const std::string bundle = "System/Applications/" + std::string(title) + ".app";
            EXPECT_TRUE(!hasBundle(bundles, title) || tree.info(bundle, "CFBundleIdentifier") != "(none)") << title;
        }
        EXPECT_EQ(update(tree), "0");
        EXPECT_EQ(tree.bundles(), expected);
    }
    EXPECT_TRUE(!GetParam() || toldCount > 20) << toldCount;
}

INSTANTIATE_TEST_SUITE_P(Of, FaultyBundleUpdate, testing::Values(std::nullopt, EIO, ENOSPC, EACCES),
                         [](const auto& test) { return test.param ? strerrorname_np(*test.param) : "Killed"; });

} // namespace
