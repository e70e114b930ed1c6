#include "PathRoute.h"

#include "ChildProcess.h"
#include "MountNamespace.h"
#include "StallingVolume.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <sys/mount.h>
#include <unistd.h>

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
    for (const auto& [path, mountPoint] : {
             std::pair("/", ""),
             { "/etc/passwd", "" },
             { "/home/me", "" },
             { "/home/me/cloud", "/home/me/cloud" },
             { "/home/me/cloud/a/b", "/home/me/cloud" },
             { "/home/me/cloudy", "" },
             { "/home/me/cloud/memory/x", "/home/me/cloud" },
             { "/efi/loader", "" },
             { "/media/stick/x", "/media/stick" },
             { "/mnt/with blank", "/mnt/with blank" },
         }) {
        const MountTable::Mount* mount = table.firstThatMayHang(path);
        EXPECT_EQ(mount ? mount->mountPoint : "", mountPoint) << path;
    }
}

// Each path is asked about in a process with a deadline: what touches the silent mount never comes back.
std::string routeInTime(const std::string& path, LastLink lastLink)
{
    const ChildRun run = runInChild([&] {
        alarm(5);
        const auto mount = mountThatMayHangOn(path, lastLink);
        return mount ? mount->mountPoint : "none";
    });
    return run.status == 0 ? run.report : "no answer";
}

TEST(PathRoute, IsKnownBeforeASilentMountIsTouched)
{
    if (!MountNamespace::enter())
        return;
    const TemporaryDirectory files;
    files.writeFile("served/inner/file");
    const std::string dead = files.path("mnt/dead");
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
    constexpr LastLink kFollowed = LastLink::followed;
    constexpr LastLink kNotFollowed = LastLink::notFollowed;
    for (const auto& [path, lastLink, leadsThere] : {
             std::tuple("/mnt", kFollowed, false),
             { "/mnt/dead", kNotFollowed, true },
             { "/mnt/dead/inner/file", kFollowed, true },
             { "/mnt//dead/.", kFollowed, true },
             { "/mnt/dead/..", kFollowed, true },
             { "/local/deep/../../mnt/dead", kFollowed, true },
             { "/direct", kNotFollowed, false },
             { "/direct", kFollowed, true },
             { "/direct/", kNotFollowed, true },
             { "/direct/inner", kNotFollowed, true },
             { "/local/relative", kNotFollowed, false },
             { "/local/chain", kFollowed, true },
             { "/local/toLocal", kFollowed, false },
             { "/local/toLocal/../up/dead", kFollowed, true },
             { "/local/toLocal/../missing/dead", kFollowed, false },
             { "/loop/x", kFollowed, false },
             { "/nothing/here", kFollowed, false },
         })
        EXPECT_EQ(routeInTime(files.path() + path, lastLink), leadsThere ? dead : "none") << path;
}

// The automounter here is the test itself, and it never mounts anything.
TEST(PathRoute, StopsBeforeAnAutomount)
{
    if (!MountNamespace::enter())
        return;
    if (!MountNamespace::isRootOfMachine())
        GTEST_SKIP() << "only root mounts autofs";
    const TemporaryDirectory files;
    const std::string net = files.makeDirectory("net");
    files.makeLink("link", net + "/server/share");
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const std::string options =
        "fd=" + std::to_string(ends[1]) + ",pgrp=" + std::to_string(getpgrp()) + ",minproto=5,maxproto=5,indirect";
    ASSERT_EQ(mount("test", net.c_str(), "autofs", 0, options.c_str()), 0);
    EXPECT_EQ(routeInTime(files.path("link"), LastLink::followed), net);
    EXPECT_EQ(routeInTime(net + "/server", LastLink::notFollowed), net);
    EXPECT_EQ(routeInTime(files.path("link"), LastLink::notFollowed), "none");
    pollfd request { ends[0], POLLIN, 0 };
    EXPECT_EQ(poll(&request, 1, 0), 0) << "a mount was asked for";
    umount2(net.c_str(), MNT_DETACH);
    close(ends[0]);
    close(ends[1]);
}

} // namespace
