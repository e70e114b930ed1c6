#pragma once

#include <cstdio>
#include <string>

namespace quillbox {

// A mounted file system that a test can make stop answering: see Tests/FileServer. Needs a MountNamespace. It is
// unmounted, and answers again, at the end.
class StallingVolume {
public:
    // Shows the files below `contents` at `mountPoint`, which is made where it is missing. `gate` names a file to be
    // made.
    StallingVolume(const std::string& contents, const std::string& mountPoint, const std::string& gate);
    ~StallingVolume();
    StallingVolume(const StallingVolume&) = delete;
    StallingVolume& operator=(const StallingVolume&) = delete;

    // Empty where it is mounted, else why this machine can't have it.
    const std::string& reasonItCannotBe() const { return reason_; }

    void stopAnswering() const;
    void answerAgain() const;

private:
    std::string mountPoint_;
    std::string reason_;
    int gate_ = -1;
    // What the server writes once it is mounted.
    std::FILE* server_ = nullptr;
};

} // namespace quillbox
