#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillbox {

// Which resource values to read; combine with |.
enum class URLResourceKey : std::uint32_t {
    isHidden = 1,
    isDirectory = 2,
    isPackage = 4,
    hasHiddenExtension = 8,
    isAliasFile = 16,
    isSymbolicLink = 32,
    isVolume = 64,
    volumeLocalizedName = 128,
};

constexpr URLResourceKey operator|(URLResourceKey a, URLResourceKey b)
{
    return static_cast<URLResourceKey>(static_cast<std::uint32_t>(a) | static_cast<std::uint32_t>(b));
}
constexpr URLResourceKey without(URLResourceKey set, URLResourceKey key)
{
    return static_cast<URLResourceKey>(static_cast<std::uint32_t>(set) & ~static_cast<std::uint32_t>(key));
}
constexpr bool contains(URLResourceKey set, URLResourceKey key)
{
    return (static_cast<std::uint32_t>(set) & static_cast<std::uint32_t>(key)) != 0;
}

// What is known of one path. A value that was not asked for, or has no meaning for the path, is absent.
// Links are not followed: every value is the entry's own.
struct URLResourceValues {
    std::optional<bool> isHidden;
    std::optional<bool> isDirectory;
    std::optional<bool> isPackage;
    std::optional<bool> hasHiddenExtension;
    // Whether the entry is a desktop entry of Type=Link to a file: URL.
    std::optional<bool> isAliasFile;
    std::optional<bool> isSymbolicLink;
    // Whether the entry is the root of a mounted file system.
    std::optional<bool> isVolume;
    // The name people see in their file manager; absent where the path is not a volume's root.
    std::optional<std::string> volumeLocalizedName;

    friend bool operator==(const URLResourceValues&, const URLResourceValues&) = default;
};

// Whether a directory of this name is shown as a file: the name ends in .app, .prefPane, .bundle, .plugin or .AppDir,
// spelled exactly so, with something before it. The name alone decides, so no look inside is needed.
bool isPackageName(std::string_view lastPathComponent);

// Whether a package of this name is shown without its extension: .app and .prefPane.
bool packageHidesExtension(std::string_view lastPathComponent);

} // namespace quillbox
