#include "StallingVolume.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/mount.h>
#include <unistd.h>

namespace quillbox {

StallingVolume::StallingVolume(const std::string& contents, const std::string& mountPoint, const std::string& gate)
    : mountPoint_(std::filesystem::weakly_canonical(mountPoint)),
      gate_(::open(gate.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
{
    std::filesystem::create_directories(mountPoint_);
    // The build puts all programs into one directory.
    const std::string program =
        std::filesystem::read_symlink("/proc/self/exe").replace_filename("stalling-file-server");
    const std::string command = "exec '" + program + "' '" + contents + "' '" + gate + "' '" + mountPoint_ + "'";
    server_ = ::popen(command.c_str(), "re"); // NOLINT(cert-env33-c): the paths are the test's own
    if (std::fgetc(server_) == EOF)
        reason_ = "its server has ended: /dev/fuse is closed to us, or mounting is refused";
}

StallingVolume::~StallingVolume()
{
    answerAgain();
    ::close(gate_);
    ::umount2(mountPoint_.c_str(), MNT_DETACH);
    ::pclose(server_);
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
