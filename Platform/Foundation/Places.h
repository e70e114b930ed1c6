#pragma once

#include <string>
#include <vector>

namespace quillbox {

// A directory that users often go to, as file managers list it at the side of their windows.
struct Place {
    enum class Kind { home, standardDirectory, fileSystem, bookmark, volume };

    Kind kind = Kind::home;
    // The name to show, in UTF-8.
    std::string title;
    // Absolute, as the file system's bytes.
    std::string path;
    // Whether it lies on a mount that may never answer, so that it was listed without being looked at. Whoever shows it
    // does not look at it either.
    bool mayHang = false;

    friend bool operator==(const Place&, const Place&) = default;
};

// Knows the places of the user. The desktop's side implements it; whatever lists places asks the installed one when it
// is shown. If none is installed, there are no places.
class Places {
public:
    virtual ~Places() = default;
    // Returns the places in the order to show them, each directory once. Every call reads them again.
    virtual std::vector<Place> places() = 0;
};

} // namespace quillbox
