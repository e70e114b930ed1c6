#pragma once

#include <memory>
#include <optional>
#include <string>

namespace quillbox {

class URL;

// Names a file by what it is, not by where it lies, and follows it while this process runs. Copies share one reference.
// For files on the root and home mounts it holds a descriptor that only names the file (O_PATH, close-on-exec), for at
// most 256 files at once. Elsewhere, and beyond that number, it knows only the file's identity and last path, since a
// held descriptor would keep the volume from being unmounted.
class FileReferenceURL {
public:
    // Returns the file's present path, or nothing if it has been deleted or can't be found.
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
