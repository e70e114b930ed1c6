#pragma once

#include "VolumeNames.h"

namespace quillbox {

// Names volumes as the desktop's file manager does: by their label where the volume monitor knows one, else by what
// their mount point tells. Installed once by the program; asked only for roots of mounted file systems.
class LinuxVolumeNames final : public VolumeNames {
public:
    std::optional<std::string> localizedName(const std::string& mountRoot) override;
};

} // namespace quillbox
