#include "MountNamespace.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace quillbox {

namespace {

    constexpr const char* kInside = "QUILLBOX_TEST_MOUNT_NAMESPACE";
    constexpr int kNotPermitted = 77;

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
        return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
    }

    bool isMounted(const std::string& mountPoint)
    {
        struct stat inside { };
        struct stat outside { };
        return ::stat(mountPoint.c_str(), &inside) == 0 && ::stat((mountPoint + "/..").c_str(), &outside) == 0
            && inside.st_dev != outside.st_dev;
    }

} // namespace

bool MountNamespace::enter()
{
    if (std::getenv(kInside))
        return true;
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    const std::string filter = std::string("--gtest_filter=") + test->test_suite_name() + "." + test->name();
    const bool isRoot = geteuid() == 0;
    const pid_t child = fork();
    if (child == 0) {
        if (!makeNamespace())
            _exit(kNotPermitted);
        setenv(kInside, isRoot ? "root" : "person", 1);
        unsetenv("GTEST_OUTPUT");
        execl("/proc/self/exe", "test", filter.c_str(), nullptr);
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    EXPECT_NE(code, kNotPermitted) << "This machine permits no mount namespace, neither as root (CAP_SYS_ADMIN) nor"
                                      " by a user namespace, so nothing about volumes could be tried.";
    EXPECT_EQ(code, 0) << "the test inside the namespace failed, see above";
    return false;
}

bool MountNamespace::isRootOfMachine()
{
    const char* inside = std::getenv(kInside);
    return inside && std::string(inside) == "root";
}

const char* TestVolume::name(Kind kind)
{
    switch (kind) {
    case Kind::imageByFuse:
        return "ext4 image through FUSE";
    case Kind::imageOnLoopDevice:
        return "ext4 image on a loop device";
    case Kind::bindMount:
        return "bind mount";
    }
    return "";
}

TestVolume::TestVolume(Kind kind, const std::string& contents, std::string directory) : kind_(kind), contents_(contents)
{
    if (kind == Kind::bindMount)
        return;
    image_ = std::move(directory) + "/image";
    const std::string command = "PATH=$PATH:/usr/sbin:/sbin; export PATH; ";
    if (!run(command + "mke2fs -q -t ext4 -O ^has_journal -d '" + contents + "' '" + image_ + "' 8M"))
        reason_ = "mke2fs is missing";
    else if (kind == Kind::imageByFuse && (!run("command -v fuse2fs") || access("/dev/fuse", R_OK | W_OK) != 0))
        reason_ = "fuse2fs is missing, or /dev/fuse is closed to us";
    else if (kind == Kind::imageOnLoopDevice && access("/dev/loop-control", R_OK | W_OK) != 0)
        reason_ = "/dev/loop-control is closed to us";
    if (!reason_.empty())
        return;
    // Some machines have all of it and refuse the mount.
    if (!mount(image_ + ".tried") || unmount() != 0)
        reason_ = "mounting is refused";
}

bool TestVolume::mount(const std::string& mountPoint)
{
    std::filesystem::create_directories(mountPoint);
    mountPoint_ = mountPoint;
    switch (kind_) {
    case Kind::imageByFuse:
        return mountByFuse();
    case Kind::imageOnLoopDevice:
        return run("mount -o loop '" + image_ + "' '" + mountPoint + "'");
    case Kind::bindMount:
        return ::mount(contents_.c_str(), mountPoint.c_str(), nullptr, MS_BIND, nullptr) == 0;
    }
    return false;
}

// Its process is waited for at unmounting: only then has it written everything back.
bool TestVolume::mountByFuse()
{
    pollfd change { open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC), POLLPRI, 0 };
    fuseProcess_ = fork();
    if (fuseProcess_ == 0) {
        execlp("fuse2fs", "fuse2fs", "-f", "-o", "fakeroot", image_.c_str(), mountPoint_.c_str(), nullptr);
        _exit(127);
    }
    bool isThere = false;
    // The system tells of a change; the deadline is for a program that neither mounts nor ends.
    for (int i = 0; i < 100 && !(isThere = isMounted(mountPoint_)) && waitpid(fuseProcess_, nullptr, WNOHANG) == 0; ++i)
        poll(&change, 1, 100);
    close(change.fd);
    return isThere;
}

int TestVolume::unmount()
{
    if (umount2(mountPoint_.c_str(), 0) != 0)
        return errno;
    if (fuseProcess_ > 0)
        waitpid(std::exchange(fuseProcess_, -1), nullptr, 0);
    std::filesystem::remove(mountPoint_);
    return 0;
}

} // namespace quillbox
