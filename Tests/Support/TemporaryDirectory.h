#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// A directory of the test's own, removed with everything in it at the end. Names are bytes, as the file
// system takes them; relative names lie in the directory, directories on the way are made.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::string& path() const { return path_; }
    std::string path(std::string_view name) const { return path_ + "/" + std::string(name); }

    // Each returns the whole path of what it made.
    std::string writeFile(std::string_view name, std::string_view contents = {}) const;
    std::string makeDirectory(std::string_view name) const;
    std::string makeLink(std::string_view name, std::string_view destination) const;
    // Relative names on both sides; the new one may be whole.
    std::string rename(std::string_view from, std::string_view to) const;
    void remove(std::string_view name) const;
    std::string readFile(std::string_view name) const;
    // What lies in a directory, in the order of names; nothing where there is none.
    std::vector<std::string> names(std::string_view directory) const;

private:
    std::string path_;
};

} // namespace quillbox
