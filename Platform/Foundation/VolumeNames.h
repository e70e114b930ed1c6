#pragma once

#include <optional>
#include <string>

namespace quillbox {

// The names that people see for volumes in their file manager. Implemented by the desktop's side; the Installed ones
// are asked by URL::resourceValues, for the roots of mounted file systems only. Without any, volumes have no localized
// name.
class VolumeNames {
public:
    virtual ~VolumeNames() = default;
    virtual std::optional<std::string> localizedName(const std::string& mountRoot) = 0;
};

} // namespace quillbox
