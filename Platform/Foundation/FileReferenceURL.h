#pragma once

#include <memory>
#include <optional>
#include <string>

namespace quillbox {

class URL;

// Names a file by what it is, not by where it lies, and follows it while this process runs. Copies share
// one reference. On the root and home mounts a descriptor that only names the file (O_PATH, close-on-exec)
// does the following, at most 256 at once; elsewhere, and past that, identity and last path do, so that no
// volume is kept from being unmounted.
class FileReferenceURL {
public:
    // The file's path now; none where it has been deleted or can't be found.
    std::optional<std::string> path() const;

    // The most descriptors held at once by all references of the process.
    static constexpr int kMaximumDescriptors = 256;

private:
    friend class URL;
    struct State;
    explicit FileReferenceURL(std::shared_ptr<State>);
    std::shared_ptr<State> state_;
};

} // namespace quillbox
