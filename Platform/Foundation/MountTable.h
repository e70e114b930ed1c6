#pragma once

#include "FileDescriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quillbox {

// Where file systems are mounted, as this process sees them. Asked for by listings and by whoever needs to
// know a volume's root. The system's table is read again only when the system says that it has changed, so
// a question costs one poll(). Where there is no such table, nothing is mounted anywhere.
class MountTable {
public:
    // The process's table, brought up to date. The reference is good until the next call.
    static const MountTable& current();

    bool isMountRoot(const std::string& path) const { return roots_.contains(path); }
    // The names directly in the directory that something is mounted on. The path must have no links in it.
    std::unordered_set<std::string> mountPointsIn(const std::string& directoryPath) const;
    // The device (or other source) of the mount with this id; empty where it is not known.
    const std::string& source(std::uint64_t mountId) const;
    // Changes whenever the table does.
    std::uint64_t generation() const { return generation_; }

    // Reads the lines of a mountinfo file; lines that can't be read are passed over.
    void parse(std::string_view mountinfo);

private:
    bool hasChanged();

    FileDescriptor watched_;
    std::uint64_t generation_ = 0;
    std::unordered_set<std::string> roots_;
    std::unordered_map<std::string, std::vector<std::string>> namesByDirectory_;
    std::unordered_map<std::uint64_t, std::string> sources_;
};

} // namespace quillbox
