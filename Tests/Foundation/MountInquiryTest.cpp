#include "MountInquiry.h"

#include "Bookmark.h"
#include "FileContents.h"
#include "FileManager.h"
#include "MountNamespace.h"
#include "StallingVolume.h"
#include "TemporaryDirectory.h"
#include "URL.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <numeric>
#include <poll.h>
#include <set>
#include <sys/syscall.h>

using namespace quillbox;

namespace {

using std::chrono::milliseconds;

// Time enough for a busy machine to answer; silence takes as long.
constexpr milliseconds kQuestion { 1000 };
constexpr milliseconds kOpening { 3000 };

const std::string kHelper = std::filesystem::read_symlink("/proc/self/exe").replace_filename("quillbox-mount-helper");

// Two volumes with the same files, both of them able to fall silent, beside a local directory.
struct World {
    explicit World(const std::string& helper = kHelper)
        : inquiry(helper, [this](const Error& error) { told.push_back(error.description()); }, { kQuestion, kOpening })
    {
        EXPECT_EQ(first.reasonItCannotBe(), "");
    }

    std::string served() const
    {
        files.writeFile("served/inner/.hidden", "ghost\n");
        files.writeFile("served/inner/ghost");
        files.writeFile("served/inner/alias.desktop", "[Desktop Entry]\nType=Link\nURL=file:///a\n");
        files.writeFile("served/file.txt", "text");
        files.makeLink("served/link", "file.txt");
        return files.path("served");
    }

    TemporaryDirectory files;
    std::string contents = served();
    StallingVolume first { contents, files.path("first"), files.path("gate1") };
    StallingVolume second { contents, files.path("second"), files.path("gate2") };
    std::vector<std::string> told;
    MountInquiry inquiry;
};

milliseconds timeOf(const std::function<void()>& action)
{
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
}

// All that is ever asked of the entries below a directory, as text.
std::string allAnswers(const std::string& top)
{
    FileManager files;
    constexpr URLResourceKey kKeys = URLResourceKey::isHidden | URLResourceKey::isDirectory
        | URLResourceKey::isAliasFile | URLResourceKey::isSymbolicLink | URLResourceKey::isVolume;
    std::string text;
    for (const char* name : { "", "/inner", "/inner/ghost", "/inner/alias.desktop", "/file.txt", "/link", "/none" }) {
        const std::string path = top + name;
        const auto values = URL::fileURLWithPath(path).resourceValues(kKeys);
        text += std::string(name) + ": " + (files.fileExists(path) ? "there " : "not there ");
        for (const auto member : { &URLResourceValues::isHidden, &URLResourceValues::isDirectory,
                                   &URLResourceValues::isAliasFile, &URLResourceValues::isSymbolicLink })
            text += values ? std::to_string(((*values).*member).value_or(false)) : std::to_string(values.error().code);
        const auto target = files.destinationOfSymbolicLink(path);
        text += ' ' + (target ? *target : std::to_string(target.error().code));
        const auto bytes = readFile(path, 100);
        text += ' ' + (bytes ? std::string(bytes->begin(), bytes->end()) : std::to_string(bytes.error().code)) + '\n';
        const auto listing =
            files.contentsOfDirectory(URL::fileURLWithPath(path), DirectoryEnumerationOptions::skipsHiddenFiles);
        std::set<std::string> names;
        for (std::size_t i = 0; listing && i < listing->count(); ++i)
            names.insert("  " + std::string(listing->name(i)) + std::to_string(static_cast<int>(listing->kind(i))));
        text = std::accumulate(names.begin(), names.end(), std::move(text));
        const Result<Bookmark> bookmark = Bookmark::ofPath(path);
        text += bookmark ? "  is remembered\n" : "  " + std::to_string(bookmark.error().code) + '\n';
    }
    return text;
}

TEST(MountInquiry, GivesTheAnswersThatTheFileSystemGivesItself)
{
    if (!MountNamespace::enter())
        return;
    World world;
    const std::string directly = allAnswers(world.contents);
    EXPECT_EQ(world.inquiry.helperProcess(), -1) << "local files need no helper";
    MountInquiry::beginOpening();
    EXPECT_EQ(allAnswers(world.files.path("first")), directly);
    EXPECT_GT(world.inquiry.helperProcess(), 0);
    EXPECT_TRUE(world.told.empty());
    // One that has ended meanwhile is replaced unseen.
    const pid_t before = world.inquiry.helperProcess();
    kill(before, SIGKILL);
    pollfd end { static_cast<int>(syscall(SYS_pidfd_open, before, 0)), POLLIN, 0 };
    poll(&end, 1, 5000);
    close(end.fd);
    EXPECT_TRUE(FileManager().fileExists(world.files.path("first/file.txt")));
    EXPECT_NE(world.inquiry.helperProcess(), before);
}

TEST(MountInquiry, WaitsOnceForASilentMountAndAsksAgainAtTheNextOpening)
{
    if (!MountNamespace::enter())
        return;
    World world;
    const URL dead = URL::fileURLWithPath(world.files.path("first/inner"));
    bool isStale = false;
    const Data bookmark = *URL::fileURLWithPath(world.files.path("first/file.txt")).bookmarkData();
    world.first.stopAnswering();
    const auto seen = [&] {
        return FileManager().contentsOfDirectory(dead, DirectoryEnumerationOptions::none).hasValue();
    };
    const milliseconds firstTime = timeOf([&] { EXPECT_FALSE(seen()); });
    EXPECT_GE(firstTime, kQuestion);
    EXPECT_LT(firstTime, kOpening);
    const milliseconds later = timeOf([&] {
        EXPECT_FALSE(FileManager().fileExists(dead.path()));
        EXPECT_EQ(dead.resourceValues(URLResourceKey::isDirectory).error().code, ETIMEDOUT);
        EXPECT_EQ(URL::resolvingBookmarkData(bookmark, isStale).error().code, ETIMEDOUT);
        EXPECT_EQ(allAnswers(world.files.path("second")), allAnswers(world.contents)) << "the others answer meanwhile";
    });
    EXPECT_LT(later, kQuestion) << "it was passed over";
    MountInquiry::continueOpening();
    EXPECT_LT(timeOf([&] { EXPECT_FALSE(seen()); }), kQuestion);
    MountInquiry::beginOpening();
    EXPECT_GE(timeOf([&] { EXPECT_FALSE(seen()); }), kQuestion);
    ASSERT_EQ(world.told.size(), 1U) << "once for all of its silence";
    EXPECT_NE(world.told.front().find("/first\""), std::string::npos) << world.told.front();
    world.first.answerAgain();
    MountInquiry::beginOpening();
    EXPECT_TRUE(seen());
    EXPECT_EQ(URL::resolvingBookmarkData(bookmark, isStale)->path(), world.files.path("first/file.txt"));
    EXPECT_FALSE(isStale);
}

TEST(MountInquiry, WaitsNoLongerThanAnOpeningMayTakeAndKeepsFewProcesses)
{
    if (!MountNamespace::enter())
        return;
    World world;
    world.first.stopAnswering();
    const auto isSeen = [&] {
        MountInquiry::beginOpening();
        return FileManager().fileExists(world.files.path("first/file.txt"));
    };
    // Nobody is asked any more who has kept this many that asked; those can't be ended, even by force.
    int asked = 0;
    while (asked < 20 && timeOf([&] { EXPECT_FALSE(isSeen()); }) >= kQuestion / 2)
        ++asked;
    EXPECT_LE(asked, 8);
    EXPECT_GE(asked, 2);
    world.first.answerAgain();
    // They end as soon as they can.
    for (int i = 0; i < 500 && !isSeen(); ++i)
        poll(nullptr, 0, 10);
    EXPECT_TRUE(isSeen());
}

TEST(MountInquiry, TellsWhereItsHelperIsMissing)
{
    if (!MountNamespace::enter())
        return;
    const World world("/nothing/here");
    EXPECT_FALSE(FileManager().fileExists(world.files.path("first/file.txt")));
    ASSERT_EQ(world.told.size(), 1U);
    EXPECT_NE(world.told.front().find("couldn't start"), std::string::npos) << world.told.front();
    EXPECT_TRUE(FileManager().fileExists(world.files.path("served/file.txt")));
}

} // namespace
