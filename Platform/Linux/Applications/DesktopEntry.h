#pragma once

#include "Result.h"

#include <optional>
#include <string>
#include <vector>

namespace quillbox {

// What one desktop entry of Type=Application says, in one language. A plain value: it stays as it was when the file
// changes. Files that are no such entry (another type, no name, damaged, larger than a megabyte) give none.
struct DesktopEntry {
    std::string name;
    // A name in the icon theme or an absolute path; empty where the entry has none.
    std::string icon;
    // The first word of Exec; empty where the entry is only activated over the bus.
    std::string program;
    std::string tryExec;
    bool isHidden = false;
    bool isNoDisplay = false;
    bool hasOnlyShowIn = false;
    std::vector<std::string> onlyShowIn;
    std::vector<std::string> notShowIn;
    std::vector<std::string> categories;
    // Values of the keys that settings programs mark their panels with: X-KDE-AliasFor,
    // X-Cinnamon-Settings-Panel.
    std::string kdeAliasFor;
    std::string cinnamonSettingsPanel;

    // `languages` as in XdgEnvironment. None where the file is no such entry or is gone; an error where it is there but
    // can't be read at the moment.
    static Result<std::optional<DesktopEntry>> read(const std::string& path, const std::vector<std::string>& languages);

    // Whether OnlyShowIn and NotShowIn let it be seen on a desktop with these names, most specific first.
    bool isShownOn(const std::vector<std::string>& desktops) const;
    bool hasCategory(const std::string& category) const;
};

} // namespace quillbox
