#pragma once

#include <compare>

namespace quillbox {

struct OperatingSystemVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;
    friend constexpr auto operator<=>(const OperatingSystemVersion&, const OperatingSystemVersion&) = default;
};

// The version of the system that the application was designed for and that this layer stands in for. It is not the
// version of the kernel or the desktop.
inline constexpr OperatingSystemVersion kOperatingSystemVersion { 13, 0, 0 };

} // namespace quillbox
