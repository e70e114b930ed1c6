#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillbox {

struct DesktopEntry;

// How one desktop marks its settings panels, and which program shows them all. The desktops are rows of a table;
// callers get the row from forDesktops() and name no desktop themselves.
struct SettingsPanels {
    // The desktop's name in XDG_CURRENT_DESKTOP.
    const char* desktop;
    // The desktop ids of its settings program, the usual one first.
    std::vector<const char*> programs;
    // An entry with this category is a panel; null means that no category makes one.
    const char* category;
    // If true, the category counts only if the entry's OnlyShowIn names the desktop.
    bool mustNameDesktop;
    // An entry is also a panel if this key has this value; with a null keyValue every value counts.
    std::string DesktopEntry::*key;
    const char* keyValue;
    // Whether entries with NoDisplay count. Some desktops mark panels so that only the settings program lists them.
    bool showsNoDisplay;

    // Returns the row of the first name that has one, or null if no settings panels are known for the desktop.
    static const SettingsPanels* forDesktops(const std::vector<std::string>& desktops);

    // Whether the entry is a panel. Hidden and TryExec are not considered here, since they hold for every entry.
    bool isPanel(const std::string& desktopId, const DesktopEntry& entry) const;
    // Returns 0 for the usual settings program of the desktop and higher numbers for the others; nothing for other
    // entries.
    std::optional<std::size_t> programRank(const std::string& desktopId) const;
};

} // namespace quillbox
