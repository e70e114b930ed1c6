#pragma once

#include "Result.h"

#include <optional>
#include <string>
#include <vector>

namespace quillbox {

// What one desktop entry of Type=Application says in one language. It is a plain value and stays as it was when the
// file changes. Files that are no such entry (those with another type or without a name, damaged ones, and those larger
// than a megabyte) give none.
struct DesktopEntry {
    std::string name;
    // A name in the icon theme or an absolute path; empty if the entry has no icon.
    std::string icon;
    // The first word of Exec; empty if the entry can only be activated over the bus.
    std::string program;
    std::string tryExec;
    bool isHidden = false;
    bool isNoDisplay = false;
    bool hasOnlyShowIn = false;
    std::vector<std::string> onlyShowIn;
    std::vector<std::string> notShowIn;
    std::vector<std::string> categories;
    // The values of the keys X-KDE-AliasFor and X-Cinnamon-Settings-Panel, by which settings programs mark their
    // panels.
    std::string kdeAliasFor;
    std::string cinnamonSettingsPanel;

    // `languages` is as in XdgEnvironment. Returns nothing if the file is no such entry or is gone, and an error if it
    // is there but can't be read at the moment.
    static Result<std::optional<DesktopEntry>> read(const std::string& path, const std::vector<std::string>& languages);

    // Whether OnlyShowIn and NotShowIn allow the entry on a desktop with these names, most specific first.
    bool isShownOn(const std::vector<std::string>& desktops) const;
    bool hasCategory(const std::string& category) const;
};

} // namespace quillbox
