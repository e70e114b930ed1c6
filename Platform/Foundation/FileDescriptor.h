#pragma once

#include <unistd.h>
#include <utility>

namespace quillbox {

// Owns one file descriptor and closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) { }
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) { }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { close(); }

    explicit operator bool() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }
    // Returns a negative number if the system reports a failure; the descriptor is gone either way.
    int close() { return descriptor_ < 0 ? 0 : ::close(std::exchange(descriptor_, -1)); }

private:
    int descriptor_ = -1;
};

} // namespace quillbox
