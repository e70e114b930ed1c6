#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillbox {

struct DesktopEntry;

// How one desktop marks its settings panels and which program shows them all. The desktops are rows of a table;
// code asks forDesktops() and then this row, and names no desktop itself.
struct SettingsPanels {
    // As the desktop calls itself in XDG_CURRENT_DESKTOP.
    const char* desktop;
    // Desktop ids of its settings program, the usual one first.
    std::vector<const char*> programs;
    // An entry is a panel if it has this category (null: no category makes one),
    const char* category;
    // where set, only if its OnlyShowIn names the desktop,
    bool mustNameDesktop;
    // or if this key has this value (null: any value makes one).
    std::string DesktopEntry::*key;
    const char* keyValue;
    // Panels that the settings program alone is meant to list are NoDisplay.
    bool showsNoDisplay;

    // The row of the first name that has one; null where the desktop has no settings panels that we know of.
    static const SettingsPanels* forDesktops(const std::vector<std::string>& desktops);

    // Does not look at Hidden or TryExec, which hold for every entry.
    bool isPanel(const std::string& desktopId, const DesktopEntry& entry) const;
    // 0 for its usual settings program, counting on for the others; none for any other entry.
    std::optional<std::size_t> programRank(const std::string& desktopId) const;
};

} // namespace quillbox
