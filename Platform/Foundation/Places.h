#pragma once

#include <string>
#include <vector>

namespace quillbox {

// A directory that people go to often, as file managers list it at the side of their windows.
struct Place {
    enum class Kind { home, standardDirectory, fileSystem, bookmark, volume };

    Kind kind = Kind::home;
    // As people read it, in UTF-8.
    std::string title;
    // Absolute, the file system's bytes.
    std::string path;
    // Whether it lies on a mount that may never answer, so that it was listed without being looked at. Whoever shows it
    // does not look at it either.
    bool mayHang = false;

    friend bool operator==(const Place&, const Place&) = default;
};

// Knows the places of the person at the keyboard. Implemented by the desktop's side; the Installed ones are asked by
// whatever lists places, when it is shown. Without any, there are none.
class Places {
public:
    virtual ~Places() = default;
    // In the order to show them, each directory once. Reads afresh at every call.
    virtual std::vector<Place> places() = 0;
};

} // namespace quillbox
