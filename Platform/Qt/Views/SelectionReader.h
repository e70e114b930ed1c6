#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace quillbox {

// Asks the program that owns a selection of the X server for its data, over a separate connection. The toolkit's own
// function waits five seconds for an owner that does not respond, and this limit can't be changed.
class SelectionReader {
public:
    // `window` is the window of ours that received the drop. Some owners send the data only to it, or to a window below
    // it.
    explicit SelectionReader(unsigned long window) : window_(window) { }

    // How long the owner may take until it begins to send, and until it has finished.
    std::chrono::milliseconds longestSilence { 1000 };
    std::chrono::milliseconds longest { 4000 };

    // Returns nothing if there is no owner, if it has no data of that type, or if it takes too long.
    std::optional<std::string> read(const std::string& selection, const std::string& type) const;

private:
    unsigned long window_;
};

} // namespace quillbox
