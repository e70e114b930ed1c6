#pragma once

#include "Places.h"

namespace quillbox {

// The person's places as Linux desktops know them: their home, the standard directories that exist, the root of the
// file system, and the volumes that are mounted where desktops mount what people plug in. Installed once by the
// program.
class LinuxPlaces final : public Places {
public:
    std::vector<Place> places() override;
};

} // namespace quillbox
