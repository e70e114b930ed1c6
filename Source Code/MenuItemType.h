#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quillbox {

// The kinds of top-level items of the status menu.
enum class MenuItemType {
    fixedAppPreferences,
    separator,
    systemSettings,
    systemApplicationsDirectory,
    plaintext,
    arbitraryPath,
    recentItems,
    recentItemsApps,
    recentItemsDocs,
    userHomeDirectory,
    userDesktopDirectory,
    userDocumentsDirectory,
    userDownloadsDirectory,
    other,
};

inline constexpr std::size_t kMenuItemTypeCount = 14;

namespace detail {
    inline constexpr std::array<std::string_view, kMenuItemTypeCount> menuItemTypeRawValues {
        "fixedAppPreferences",
        "separator",
        "systemSettings",
        "systemApplicationsDirectory",
        "plaintext",
        "arbitraryPath",
        "recentItems",
        "recentItemsApps",
        "recentItemsDocs",
        "userHomeDirectory",
        "userDesktopDirectory",
        "userDocumentsDirectory",
        "userDownloadsDirectory",
        "other",
    };
}

// Returns the name under which the kind is saved; "unknown" for a value that is no kind.
constexpr std::string_view rawValue(MenuItemType type)
{
    const auto index = static_cast<std::size_t>(type);
    return index < kMenuItemTypeCount ? detail::menuItemTypeRawValues[index] : "unknown";
}

// Returns the kind with this name; the name must be spelled exactly as one of the 14.
constexpr std::optional<MenuItemType> menuItemType(std::string_view rawValue)
{
    for (std::size_t index = 0; index < kMenuItemTypeCount; ++index) {
        if (detail::menuItemTypeRawValues[index] == rawValue)
            return static_cast<MenuItemType>(index);
    }
    return std::nullopt;
}

constexpr bool isRecentItemsKind(MenuItemType type)
{
    return type == MenuItemType::recentItems || type == MenuItemType::recentItemsApps
        || type == MenuItemType::recentItemsDocs;
}

} // namespace quillbox
