#include "GlobalVars.h"

#include "Bundle.h"

namespace quillbox {

const std::string& GlobalVars::systemSettingsAppName()
{
    static const std::string name = systemSettingsAppName(kOperatingSystemVersion);
    return name;
}

std::string GlobalVars::systemSettingsAppName(OperatingSystemVersion version)
{
    return version >= OperatingSystemVersion { 13, 0, 0 } ? "System Settings" : "System Preferences";
}

const std::string& GlobalVars::separatorDisplayString()
{
    static const std::string line = [] {
        std::string text;
        for (int count = 0; count < 35; ++count)
            text += "\u23AF";
        return text;
    }();
    return line;
}

const std::string& GlobalVars::tentativeMenuItemPasteboardType()
{
    static const std::string type = Bundle::main().bundleIdentifier().value_or("") + ".tentative.MenuItem";
    return type;
}

const std::string& GlobalVars::suggestedMenuItemPasteboardType()
{
    static const std::string type = Bundle::main().bundleIdentifier().value_or("") + ".suggested.MenuItem";
    return type;
}

} // namespace quillbox
