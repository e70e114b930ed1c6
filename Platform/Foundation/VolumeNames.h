#pragma once

#include <optional>
#include <string>

namespace quillbox {

// Knows the names that file managers show for volumes. The desktop's side implements it; URL::resourceValues asks the
// installed one, for the roots of mounted file systems only. If none is installed, volumes have no localized name.
class VolumeNames {
public:
    virtual ~VolumeNames() = default;
    virtual std::optional<std::string> localizedName(const std::string& mountRoot) = 0;
};

} // namespace quillbox
