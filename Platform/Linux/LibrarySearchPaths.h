#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quillbox {

// Keeps the libraries of this process from mounts that may hang: they look through $PATH, $XDG_DATA_DIRS and
// $XDG_CONFIG_DIRS whenever they like and wait for as long as it takes. What lies on such a mount is taken out of the
// process's environment. Quillbox itself looks there all the same, in time (MountInquiry), and what it starts gets the
// lists as they were. Made once, before any library has read them.
class LibrarySearchPaths {
public:
    // Names and values.
    using Variables = std::vector<std::pair<std::string, std::string>>;

    LibrarySearchPaths();

    // The directories of $PATH on such mounts are in it while they answer. To be called before a library looks for a
    // program.
    void bringUpToDate();

    // A list as the session gave it, split; for names that were not set, the one that they stand for.
    std::vector<std::string> original(const std::string& name) const;
    // What started programs get in place of this process's own.
    Variables forStartedPrograms() const;

private:
    // As the session gave them.
    Variables lists_;
};

} // namespace quillbox
