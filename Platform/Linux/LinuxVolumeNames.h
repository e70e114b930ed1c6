#pragma once

#include "VolumeNames.h"

#include <string>
#include <utility>

namespace quillbox {

// Names volumes as the desktop's file manager does: by their label, otherwise as the volume monitor does, otherwise by
// their mount point. The program installs it once; it is asked only for roots of mounted file systems.
class LinuxVolumeNames final : public VolumeNames {
public:
    // `labels` is the directory in which the system keeps links to devices by their labels.
    explicit LinuxVolumeNames(std::string labels = "/dev/disk/by-label") : labels_(std::move(labels)) { }
    std::optional<std::string> localizedName(const std::string& mountRoot) override;

private:
    std::string labels_;
};

} // namespace quillbox
