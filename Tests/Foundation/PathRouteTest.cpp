#include "PathRoute.h"

#include "MountNamespace.h"
#include "StallingVolume.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

#include <sys/mount.h>
#include <sys/wait.h>

using namespace quillbox;

namespace {

TEST(MountThatMayHang, IsToldByTheTableAlone)
{
    MountTable table;
    table.parse("1 0 0:1 / / rw - nfs4 server:/root rw\n"
                "2 1 0:2 / /proc/sys/fs/binfmt_misc rw - autofs systemd-1 rw\n"
                "3 1 8:1 / /home rw - ext4 /dev/sda1 rw\n"
                "4 3 0:3 / /home/me/cloud rw - fuse.rclone cloud: rw\n"
                "5 1 0:4 / /efi rw - autofs systemd-1 rw\n"
                "6 5 8:2 / /efi rw - vfat /dev/sda2 rw\n"
                "7 1 8:3 / /media/stick rw - fuseblk /dev/sdb1 rw\n"
                "8 4 0:5 / /home/me/cloud/memory rw - tmpfs none rw\n"
                "9 1 0:6 / /mnt/with\\040blank rw - cifs //server/share rw\n");
    struct Case {
        const char* path;
        const char* mountPoint;
    };
    for (const Case& c : {
             Case { "/", "" },
             Case { "/etc/passwd", "" },
             Case { "/home/me", "" },
             Case { "/home/me/cloud", "/home/me/cloud" },
             Case { "/home/me/cloud/a/b", "/home/me/cloud" },
             Case { "/home/me/cloudy", "" },
             Case { "/home/me/cloud/memory/x", "/home/me/cloud" },
             Case { "/efi/loader", "" },
             Case { "/media/stick/x", "/media/stick" },
             Case { "/mnt/with blank", "/mnt/with blank" },
         }) {
        SCOPED_TRACE(c.path);
        const MountTable::Mount* mount = table.firstThatMayHang(c.path);
        EXPECT_EQ(mount ? mount->mountPoint : "", c.mountPoint);
    }
}

// Each path is asked about in a process with a deadline: what touches the silent mount never comes back.
std::string routeInTime(const std::string& path, LastLink lastLink)
{
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        alarm(5);
        const auto mount = mountThatMayHangOn(path, lastLink);
        const std::string text = mount ? mount->mountPoint : "none";
        _exit(write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0 : 1);
    }
    close(ends[1]);
    char text[4096];
    const ssize_t length = read(ends[0], text, sizeof text);
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return length > 0 ? std::string(text, static_cast<std::size_t>(length)) : "no answer";
}

TEST(PathRoute, IsKnownBeforeASilentMountIsTouched)
{
    if (!MountNamespace::enter())
        return;
    const TemporaryDirectory files;
    files.writeFile("served/inner/file");
    const std::string top = std::filesystem::canonical(files.path());
    const std::string dead = top + "/mnt/dead";
    files.makeDirectory("mnt/dead");
    files.makeDirectory("local/deep");
    files.makeLink("direct", dead);
    files.makeLink("local/relative", "../mnt/dead/inner");
    files.makeLink("local/chain", "relative/file");
    files.makeLink("local/toLocal", "deep");
    files.makeLink("local/up", "../mnt");
    files.makeLink("loop", "loop");
    const StallingVolume volume(files.path("served"), dead, files.path("gate"));
    ASSERT_EQ(volume.reasonItCannotBe(), "");
    volume.stopAnswering();
    struct Case {
        std::string path;
        LastLink lastLink;
        bool leadsThere;
    };
    constexpr LastLink kFollowed = LastLink::followed;
    constexpr LastLink kNotFollowed = LastLink::notFollowed;
    for (const Case& c : {
             Case { "/mnt", kFollowed, false },
             Case { "/mnt/dead", kNotFollowed, true },
             Case { "/mnt/dead/inner/file", kFollowed, true },
             Case { "/mnt//dead/.", kFollowed, true },
             Case { "/mnt/dead/..", kFollowed, true },
             Case { "/local/deep/../../mnt/dead", kFollowed, true },
             Case { "/direct", kNotFollowed, false },
             Case { "/direct", kFollowed, true },
             Case { "/direct/", kNotFollowed, true },
             Case { "/direct/inner", kNotFollowed, true },
             Case { "/local/relative", kNotFollowed, false },
             Case { "/local/chain", kFollowed, true },
             Case { "/local/toLocal", kFollowed, false },
             Case { "/local/toLocal/../up/dead", kFollowed, true },
             Case { "/local/toLocal/../missing/dead", kFollowed, false },
             Case { "/loop/x", kFollowed, false },
             Case { "/nothing/here", kFollowed, false },
         }) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(routeInTime(top + c.path, c.lastLink), c.leadsThere ? dead : "none");
    }
}

// The automounter here is the test itself, and it never mounts anything.
TEST(PathRoute, StopsBeforeAnAutomount)
{
    if (!MountNamespace::enter())
        return;
    if (!MountNamespace::isRootOfMachine())
        GTEST_SKIP() << "only root mounts autofs";
    const TemporaryDirectory files;
    const std::string net = std::filesystem::canonical(files.makeDirectory("net"));
    files.makeLink("link", net + "/server/share");
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const std::string options =
        "fd=" + std::to_string(ends[1]) + ",pgrp=" + std::to_string(getpgrp()) + ",minproto=5,maxproto=5,indirect";
    ASSERT_EQ(mount("test", net.c_str(), "autofs", 0, options.c_str()), 0);
    EXPECT_EQ(routeInTime(files.path("link"), LastLink::followed), net);
    EXPECT_EQ(routeInTime(net + "/server", LastLink::notFollowed), net);
    EXPECT_EQ(routeInTime(files.path("link"), LastLink::notFollowed), "none");
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    char request[512];
    EXPECT_LT(read(ends[0], request, sizeof request), 0) << "a mount was asked for";
    umount2(net.c_str(), MNT_DETACH);
    close(ends[0]);
    close(ends[1]);
}

} // namespace
