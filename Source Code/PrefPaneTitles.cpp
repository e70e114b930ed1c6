#include "PrefPaneTitles.h"

#include <array>
#include <utility>

namespace quillbox {

namespace {

    constexpr std::array<std::pair<std::string_view, std::string_view>, 15> kPrefPaneTitles { {
        { "AppleIDPrefPane.prefPane", "Apple ID" },
        { "ClassKitPreferencePane.prefPane", "Class Progress" },
        { "ClassroomSettings.prefPane", "Classroom" },
        { "DateAndTime.prefPane", "Date & Time" },
        { "DesktopScreenEffectsPref.prefPane", "Wallpaper" },
        { "EnergySaverPref.prefPane", "Energy Saver" },
        { "InternetAccounts.prefPane", "Internet Accounts" },
        { "FamilySharingPrefPane.prefPane", "Family Sharing" },
        { "SoftwareUpdate.prefPane", "Software Update" },
        { "TimeMachine.prefPane", "Time Machine" },
        { "TouchID.prefPane", "Touch ID" },
        { "PrintAndFax.prefPane", "Printers & Scanners" },
        { "PrintAndScan.prefPane", "Printers & Scanners" },
        { "ScreenTime.prefPane", "Screen Time" },
        { "SharingPref.prefPane", "Sharing" },
    } };

} // namespace

std::optional<std::string_view> prefPaneTitle(std::string_view fileName)
{
    for (const auto& [name, title] : kPrefPaneTitles) {
        if (name == fileName)
            return title;
    }
    return std::nullopt;
}

} // namespace quillbox
