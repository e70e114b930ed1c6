#include "SettingsPanels.h"

#include "DesktopEntry.h"

#include <algorithm>

namespace quillbox {

namespace {

    // clang-format off
    const SettingsPanels kTable[] = {
        { "GNOME", { "org.gnome.Settings.desktop", "gnome-control-center.desktop" },
          "X-GNOME-Settings-Panel", false, nullptr, nullptr, true },
        { "Unity", { "unity-control-center.desktop", "org.gnome.Settings.desktop", "gnome-control-center.desktop" },
          "X-GNOME-Settings-Panel", true, nullptr, nullptr, true },
        { "KDE", { "systemsettings.desktop" },
          nullptr, false, &DesktopEntry::kdeAliasFor, "systemsettings", true },
        { "XFCE", { "xfce-settings-manager.desktop" },
          "X-XFCE-SettingsDialog", false, nullptr, nullptr, false },
        { "X-Cinnamon", { "cinnamon-settings.desktop" },
          "Settings", true, &DesktopEntry::cinnamonSettingsPanel, nullptr, false },
        { "MATE", { "matecc.desktop" },
          "Settings", true, nullptr, nullptr, false },
        { "LXQt", { "lxqt-config.desktop" },
          "Settings", true, nullptr, nullptr, false },
        // Budgie's panels still name the program from which they were derived, so only the desktop's name tells them
        // apart.
        { "Budgie", { "budgie-control-center.desktop" },
          "X-GNOME-Settings-Panel", true, nullptr, nullptr, true },
    };
    // clang-format on

} // namespace

const SettingsPanels* SettingsPanels::forDesktops(const std::vector<std::string>& desktops)
{
    for (const std::string& desktop : desktops) {
        for (const SettingsPanels& row : kTable) {
            if (desktop == row.desktop)
                return &row;
        }
    }
    return nullptr;
}

bool SettingsPanels::isPanel(const std::string& desktopId, const DesktopEntry& entry) const
{
    // Only this desktop's name is asked for: if a session has two names, the panels of the other one belong to another
    // settings program.
    if (programRank(desktopId) || !entry.isShownOn({ desktop }) || (entry.isNoDisplay && !showsNoDisplay))
        return false;
    if (key && !(entry.*key).empty() && (!keyValue || entry.*key == keyValue))
        return true;
    if (!category || !entry.hasCategory(category))
        return false;
    return !mustNameDesktop
        || std::find(entry.onlyShowIn.begin(), entry.onlyShowIn.end(), desktop) != entry.onlyShowIn.end();
}

std::optional<std::size_t> SettingsPanels::programRank(const std::string& desktopId) const
{
    const auto found = std::find(programs.begin(), programs.end(), desktopId);
    if (found == programs.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - programs.begin());
}

} // namespace quillbox
