#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace quillbox {

// Asks the program that owns a selection of the X server for its data, over a connection of its own. The toolkit's way
// of asking waits five seconds for an owner that is stopped, and can't be told to wait less.
class SelectionReader {
public:
    // The window, of ours, to which the data was dropped. Some owners give it to no other, or to one below it.
    explicit SelectionReader(unsigned long window) : window_(window) { }

    // How long the owner may take to begin, and to end.
    std::chrono::milliseconds longestSilence { 1000 };
    std::chrono::milliseconds longest { 4000 };

    // None where there is no owner, where it has no data of that type, or where it takes too long.
    std::optional<std::string> read(const std::string& selection, const std::string& type) const;

private:
    unsigned long window_;
};

} // namespace quillbox
