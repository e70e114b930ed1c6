#pragma once

#include "Places.h"
#include "XdgEnvironment.h"

namespace quillbox {

// The person's places as Linux desktops know them: their home, the standard directories, the root of the file system,
// the bookmarks of their file managers, and the volumes that are mounted where desktops mount what people plug in. What
// is not there is left out, but nothing on a mount that may never answer is looked at. Installed once by the program.
class LinuxPlaces final : public Places {
public:
    // The environment says where the bookmarks lie.
    explicit LinuxPlaces(const XdgEnvironment& environment)
        : configHome_(environment.configHome),
          dataHome_(environment.dataHome)
    {
    }

    std::vector<Place> places() override;

private:
    std::string configHome_;
    std::string dataHome_;
};

} // namespace quillbox
