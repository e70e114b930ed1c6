#pragma once

#include "Places.h"
#include "XdgEnvironment.h"

namespace quillbox {

// The user's places on a Linux desktop: the home directory, the standard directories, the root of the file system, the
// bookmarks of file managers, and the volumes that are mounted where desktops mount what users plug in. Missing
// directories are left out, but nothing on a mount that may never answer is looked at. The program installs it once.
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
