#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quillbox {

// What a top-level item of the status menu is.
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

// The kind's name as it is saved; for a value that is no kind, "unknown".
constexpr std::string_view rawValue(MenuItemType type)
{
    const auto index = static_cast<std::size_t>(type);
    return index < kMenuItemTypeCount ? detail::menuItemTypeRawValues[index] : "unknown";
}

// There is a kind for the 14 names, spelled exactly so, and for no other text.
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
