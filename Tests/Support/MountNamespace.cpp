#include "MountNamespace.h"

#include "ChildProcess.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace quillbox {

namespace {

    constexpr const char* kInside = "QUILLBOX_TEST_MOUNT_NAMESPACE";

    void write(const char* file, const std::string& text)
    {
        std::ofstream(file) << text;
    }

    bool makeNamespace()
    {
        const std::string user = std::to_string(geteuid());
        const std::string group = std::to_string(getegid());
        if (geteuid() != 0) {
            if (unshare(CLONE_NEWUSER) != 0)
                return false;
            write("/proc/self/setgroups", "deny");
            write("/proc/self/uid_map", "0 " + user + " 1");
            write("/proc/self/gid_map", "0 " + group + " 1");
        }
        return unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    }

    bool run(const std::string& command)
    {
        return std::system(("PATH=$PATH:/usr/sbin:/sbin " + command + " >/dev/null 2>&1").c_str()) == 0;
    }

} // namespace

bool MountNamespace::enter()
{
    if (std::getenv(kInside))
        return true;
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    const std::string filter = std::string("--gtest_filter=") + test->test_suite_name() + "." + test->name();
    const bool isRoot = geteuid() == 0;
    const ChildRun run = runInChild([&]() -> std::string {
        if (!makeNamespace())
            return "This machine permits no mount namespace, neither as root (CAP_SYS_ADMIN) nor by a user namespace, "
                   "so nothing about volumes could be tried.";
        setenv(kInside, isRoot ? "root" : "person", 1);
        unsetenv("GTEST_OUTPUT");
        execl("/proc/self/exe", "test", filter.c_str(), nullptr);
        return "the test program can't be started again";
    });
    EXPECT_EQ(run.report, "");
    EXPECT_EQ(run.status, 0) << "the test inside the namespace failed, see above";
    return false;
}

bool MountNamespace::isRootOfMachine()
{
    const char* inside = std::getenv(kInside);
    return inside && std::string(inside) == "root";
}

const char* TestVolume::name(Kind kind)
{
    return kind == Kind::imageByFuse      ? "ext4 image through FUSE"
        : kind == Kind::imageOnLoopDevice ? "ext4 image on a loop device"
                                          : "bind mount";
}

TestVolume::TestVolume(Kind kind, const std::string& contents, const std::string& directory)
{
    const std::string image = "'" + directory + "/image' ";
    if (kind != Kind::bindMount && !run("mke2fs -q -t ext4 -O ^has_journal -d '" + contents + "' " + image + "8M"))
        reason_ = "mke2fs is missing";
    // Read-only, nothing has to be written back after the volume has gone.
    command_ = kind == Kind::imageByFuse  ? "fuse2fs -o ro,fakeroot " + image
        : kind == Kind::imageOnLoopDevice ? "mount -o loop,ro " + image
                                          : "mount --bind '" + contents + "' ";
    if (reason_.empty() && (!mount(directory + "/tried") || unmount() != 0))
        reason_ = "refused: " + command_;
}

bool TestVolume::mount(const std::string& mountPoint)
{
    std::filesystem::create_directories(mountPoint);
    mountPoint_ = mountPoint;
    return run(command_ + "'" + mountPoint + "'");
}

int TestVolume::unmount()
{
    if (umount2(mountPoint_.c_str(), 0) != 0)
        return errno;
    std::filesystem::remove(mountPoint_);
    return 0;
}

} // namespace quillbox
