#pragma once

#include <optional>
#include <string>

namespace quillbox {

// The names that people see for volumes in their file manager. Implemented by the desktop's side; asked for
// by URL::resourceValues, for the roots of mounted file systems only.
class VolumeNames {
public:
    virtual ~VolumeNames() = default;
    virtual std::optional<std::string> localizedName(const std::string& mountRoot) = 0;

    // Null before any are installed: volumes then have no localized name.
    static VolumeNames* installed();
    // `names` must outlive its use; null takes them away.
    static void install(VolumeNames* names);
};

} // namespace quillbox
