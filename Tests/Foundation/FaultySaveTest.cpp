#include "FaultInjector.h"
#include "TemporaryDirectory.h"
#include "UserDefaults.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sys/syscall.h>

using namespace quillbox;

// A save of the settings with one fault in it, at each of its system calls in turn: what is found afterwards is what
// was there before or all that was saved, and where it was not saved, that was told.

namespace {

using Values = PropertyList::Dictionary;
const Values kOld { { "kept", true } };
const Values kNew { { "kept", true }, { "new", std::string(10000, 'x') } };

constexpr const char* kFile = "config/quillbox/defaults.plist";

struct SaveCase {
    const char* name;
    // What holds the settings before; empty where there are none yet.
    std::string file;
    bool isLinkedTo = false;
    // Whether a save was killed before.
    bool isUnfinishedThere = false;
};

const SaveCase kCases[] = {
    { "TheFirst", "" },
    { "OverAnother", "defaults.plist" },
    { "ThroughALink", "target", true },
    { "AfterAKilledOne", "defaults.plist", false, true },
};

class FaultySave : public testing::TestWithParam<SaveCase> {
protected:
    static std::string save(const std::string& path)
    {
        UserDefaults defaults(path);
        int told = 0;
        defaults.setFailureHandler([&](const Error&) { ++told; });
        for (const auto& [key, value] : kNew)
            defaults.set(value, key);
        const bool isSaved = defaults.synchronize().hasValue();
        return isSaved ? "saved" : told == 1 ? "told" : "failed, told " + std::to_string(told) + " times";
    }
    static Values stored(const TemporaryDirectory& files)
    {
        return UserDefaults(files.path(kFile)).dictionaryRepresentation();
    }
    // What the save with that fault reported, in a directory of its own.
    static FaultRun runIn(const TemporaryDirectory& files, const std::optional<Fault>& fault)
    {
        const std::string directory = "config/quillbox/";
        const Data bytes = *PropertyList(kOld).binaryData();
        if (!GetParam().file.empty())
            files.writeFile(directory + GetParam().file, std::string(bytes.begin(), bytes.end()));
        if (GetParam().isLinkedTo)
            files.makeLink(kFile, GetParam().file);
        if (GetParam().isUnfinishedThere)
            files.writeFile(directory + "defaults.plist.unfinished-123456", "half");
        return runWithFault(fault, [&] { return save(files.path(kFile)); });
    }
};

TEST_P(FaultySave, AtAnyCallLeavesTheOldOrTheNewAndIsTold)
{
    const int callCount = runIn(TemporaryDirectory(), std::nullopt).callCount;
    ASSERT_GT(callCount, 15);
    const Values before = GetParam().file.empty() ? Values() : kOld;
    std::vector<std::string> names { "defaults.plist" };
    if (GetParam().isLinkedTo)
        names.push_back(GetParam().file);
    std::map<std::string, int> outcomes;
    // The first is a kill.
    for (const std::optional<int> error : { std::optional<int>(), { EIO }, { ENOSPC }, { EACCES } }) {
        for (int call = 1; call <= callCount; ++call) {
            SCOPED_TRACE("call " + std::to_string(call) + (error ? " gives " + std::to_string(*error) : " kills"));
            const TemporaryDirectory files;
            const FaultRun run = runIn(files, Fault { call, error });
            const Values found = stored(files);
            EXPECT_EQ(run.wasKilled, !error);
            EXPECT_TRUE(run.wasKilled || run.report == "saved" || run.report == "told") << run.report;
            EXPECT_TRUE(found == kNew || (run.report != "saved" && found == before));
            ++outcomes[run.report + (found == kNew ? " new" : " old")];
            EXPECT_EQ(save(files.path(kFile)), "saved");
            EXPECT_EQ(stored(files), kNew);
            if (found != kNew) {
                EXPECT_EQ(files.names("config/quillbox"), names) << "what was left is gone with the next save";
            }
        }
    }
    EXPECT_GT(outcomes[" old"], 0);
    EXPECT_GT(outcomes[" new"], 0);
    EXPECT_GT(outcomes["told old"] + outcomes["told new"], 15);
}

TEST_P(FaultySave, AFileSystemThatKeepsItsModesIsNoFailure)
{
    const TemporaryDirectory files;
    EXPECT_EQ(runIn(files, Fault { 1, EPERM, SYS_fchmod }).report, "saved");
    EXPECT_EQ(stored(files), kNew);
    EXPECT_EQ(std::filesystem::status(files.path(kFile)).permissions(), std::filesystem::perms(0600));
}

INSTANTIATE_TEST_SUITE_P(Of, FaultySave, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
