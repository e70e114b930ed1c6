#include "FaultInjector.h"
#include "XdgTree.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace quillbox;

// An update of the application bundles that is killed at each of its system calls in turn. One entry is new, one has
// another name and one is gone.

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

TEST(FaultyBundleUpdate, KilledAtAnyCallKeepsWholeBundlesAndIsFinishedByTheNext)
{
    XdgTree whole;
    prepare(whole);
    const int callCount = runWithFault(std::nullopt, [&] { return update(whole); }).callCount;
    ASSERT_GT(callCount, 40);
    const std::vector<std::string> expected = whole.bundles();
    ASSERT_TRUE(hasBundle(expected, "renamed") && hasBundle(expected, "d") && !hasBundle(expected, "c"));
    for (int call = 1; call <= callCount; ++call) {
        SCOPED_TRACE(call);
        XdgTree tree;
        prepare(tree);
        ASSERT_TRUE(runWithFault(Fault { call, std::nullopt }, [&] { return update(tree); }).wasKilled);
        const std::vector<std::string> bundles = tree.bundles();
        EXPECT_TRUE(hasBundle(bundles, "a"));
        EXPECT_TRUE(hasBundle(bundles, "b") || hasBundle(bundles, "renamed"));
        for (const char* title : { "a", "b", "renamed", "d" }) {
            const std::string bundle = "System/Applications/" + std::string(title) + ".app";
            EXPECT_TRUE(!hasBundle(bundles, title) || tree.info(bundle, "CFBundleIdentifier") != "(none)") << title;
        }
        EXPECT_EQ(update(tree), "0");
        EXPECT_EQ(tree.bundles(), expected);
    }
}

} // namespace
