#pragma once

#include <string>

namespace quillbox {

// Lets a test mount: `if (!MountNamespace::enter()) return;` as its first line runs the test again in a new process
// with a mount namespace of its own, whose end unmounts everything, and fails the test where that one fails or the
// machine permits no namespace. True in that process. As root, and as an ordinary person by a user namespace.
class MountNamespace {
public:
    static bool enter();
    // Whether the process may make device files; false in the user namespace of an ordinary person.
    static bool isRootOfMachine();
};

// A volume that is mounted and unmounted as a person would do it. Each kind tells when made why the machine can't
// have it; an empty reason means that it can.
class TestVolume {
public:
    enum class Kind { imageByFuse, imageOnLoopDevice, bindMount };
    static const char* name(Kind);

    // Its files are those below `contents`; `directory` is free for what else it needs.
    TestVolume(Kind, const std::string& contents, const std::string& directory);

    const std::string& reasonItCannotBe() const { return reason_; }
    // Makes the directory where there is none; false where mounting fails.
    bool mount(const std::string& mountPoint);
    // Gives 0, or what umount2 reports. The directory is removed, as desktops do.
    int unmount();

private:
    // What mounts it, but for the mount point at its end.
    std::string command_;
    std::string mountPoint_;
    std::string reason_;
};

} // namespace quillbox
