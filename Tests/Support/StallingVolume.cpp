#include "StallingVolume.h"

#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <unistd.h>

#include <sys/file.h>
#include <sys/mount.h>
#include <sys/wait.h>

namespace quillbox {

namespace {

    // The build puts all programs into one directory.
    std::string serverProgram()
    {
        return std::filesystem::read_symlink("/proc/self/exe").replace_filename("stalling-file-server");
    }

    // By the table: looking at the place would ask the server.
    bool isInMountTable(const std::string& mountPoint)
    {
        std::ifstream table("/proc/self/mountinfo");
        for (std::string line; std::getline(table, line);) {
            if (line.find(' ' + mountPoint + ' ') != std::string::npos)
                return true;
        }
        return false;
    }

} // namespace

StallingVolume::StallingVolume(const std::string& contents, const std::string& mountPoint, const std::string& gate)
    : mountPoint_(std::filesystem::weakly_canonical(mountPoint)),
      gate_(::open(gate.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
{
    std::filesystem::create_directories(mountPoint_);
    pollfd change { ::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC), POLLPRI, 0 };
    const std::string program = serverProgram();
    server_ = ::fork();
    if (server_ == 0) {
        ::execl(program.c_str(), program.c_str(), contents.c_str(), gate.c_str(), mountPoint_.c_str(), nullptr);
        ::_exit(127);
    }
    for (int i = 0; i < 100 && !isInMountTable(mountPoint_); ++i) {
        if (::waitpid(server_, nullptr, WNOHANG) != 0) {
            server_ = -1;
            reason_ = "its server has ended: /dev/fuse is closed to us, or mounting is refused";
            break;
        }
        ::poll(&change, 1, 100);
    }
    ::close(change.fd);
}

StallingVolume::~StallingVolume()
{
    answerAgain();
    ::close(gate_);
    if (server_ < 0)
        return;
    ::umount2(mountPoint_.c_str(), MNT_DETACH);
    ::waitpid(server_, nullptr, 0);
}

void StallingVolume::stopAnswering() const
{
    ::flock(gate_, LOCK_EX);
}

void StallingVolume::answerAgain() const
{
    ::flock(gate_, LOCK_UN);
}

} // namespace quillbox
