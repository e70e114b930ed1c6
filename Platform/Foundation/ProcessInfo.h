#pragma once

#include <compare>

namespace quillbox {

struct OperatingSystemVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;
    friend constexpr auto operator<=>(const OperatingSystemVersion&, const OperatingSystemVersion&) = default;
};

// The version of the design that this layer stands in for, not that of the kernel or the desktop.
inline constexpr OperatingSystemVersion kOperatingSystemVersion { 13, 0, 0 };

} // namespace quillbox
