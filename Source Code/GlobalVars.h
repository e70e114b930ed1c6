#pragma once

#include "AttributedString.h"
#include "NSFont.h"
#include "ProcessInfo.h"

#include <string>

namespace quillbox {

// Constants of the process, each computed on first use.
class GlobalVars {
public:
    GlobalVars() = delete;

    static const std::string& systemSettingsAppName();
    // Returns the application's name on a system of that version.
    static std::string systemSettingsAppName(OperatingSystemVersion version);
    // The title of every separator in the configuration.
    static const std::string& separatorDisplayString();

    static constexpr TextAttributes boldTextAttributes() { return { NSFont::boldSystemFont(0), {} }; }
    static constexpr TextAttributes smallTextAttributes()
    {
        return { NSFont::systemFont(NSFont::smallSystemFontSize, FontAttribute::Weight::light), {} };
    }

    // The drag types of the two tables in the preferences window.
    static const std::string& tentativeMenuItemPasteboardType();
    static const std::string& suggestedMenuItemPasteboardType();
};

} // namespace quillbox
