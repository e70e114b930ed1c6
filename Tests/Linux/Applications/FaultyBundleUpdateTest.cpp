#include "FaultInjector.h"
#include "XdgTree.h"

#include <cerrno>
#include <gmock/gmock.h>

using namespace quillbox;
using namespace testing;

// An update of the application bundles with one fault in it, at each of its system calls in turn. One entry is new, one
// has another name and one is gone.

namespace {

void prepare(XdgTree& tree)
{
    for (const char* name : { "a.desktop", "b.desktop", "c.desktop" })
        tree.writeApplication("system", name, std::string(name, 1));
    tree.settle();
    tree.update();
    tree.restart();
    tree.writeApplication("system", "b.desktop", "renamed");
    tree.removeEntry("system", "c.desktop");
    tree.writeApplication("system", "d.desktop", "d");
    tree.settle();
}

// How many errors an update tells of.
std::string update(XdgTree& tree)
{
    tree.update();
    return std::to_string(tree.errors.size());
}

std::string app(std::string_view title)
{
    return XdgTree::app(title);
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
    ASSERT_THAT(expected, ElementsAre(app("a"), app("d"), app("renamed")));
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
        EXPECT_THAT(bundles, Contains(app("a")));
        EXPECT_THAT(bundles, AnyOf(Contains(app("b")), Contains(app("renamed"))));
        for (const std::string& bundle : bundles)
            EXPECT_TRUE(bundle.find("/.") != std::string::npos || tree.info(bundle, "CFBundleIdentifier") != "(none)");
        EXPECT_EQ(update(tree), "0");
        EXPECT_EQ(tree.bundles(), expected);
    }
    EXPECT_TRUE(!GetParam() || toldCount > 20) << toldCount;
}

INSTANTIATE_TEST_SUITE_P(Of, FaultyBundleUpdate, testing::Values(std::nullopt, EIO, ENOSPC, EACCES),
                         [](const auto& test) { return test.param ? strerrorname_np(*test.param) : "Killed"; });

} // namespace
