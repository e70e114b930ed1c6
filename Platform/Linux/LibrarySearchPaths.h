#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quillbox {

// Keeps the libraries of this process away from mounts that may hang. Libraries search $PATH, $XDG_DATA_DIRS and
// $XDG_CONFIG_DIRS at any time and wait without limit, so directories on such mounts are removed from the environment
// of this process. Quillbox itself still searches them, in bounded time (MountInquiry), and programs that it starts get
// the original lists. It is made once, before any library has read the variables.
class LibrarySearchPaths {
public:
    // Pairs of name and value.
    using Variables = std::vector<std::pair<std::string, std::string>>;

    LibrarySearchPaths();

    // Puts the directories of $PATH on such mounts back while they answer. Must be called before a library looks for a
    // program.
    void bringUpToDate();

    // Returns a list as the session gave it, split into directories; the standard's default if the variable was not
    // set.
    std::vector<std::string> original(const std::string& name) const;
    // Returns the values that started programs get instead of those of this process.
    Variables forStartedPrograms() const;

private:
    // The lists as the session gave them.
    Variables lists_;
};

} // namespace quillbox
