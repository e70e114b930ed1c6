#pragma once

#include "InstalledBundles.h"
#include "UseRecord.h"

#include <string_view>
#include <unordered_map>

namespace quillbox {

// Finds the bundle of an application that a record of use names in its own way. The index of recent use makes it; the
// bundles must outlive it.
class ApplicationLookup {
public:
    explicit ApplicationLookup(const std::vector<InstalledBundle>& bundles);

    // Looks for the desktop id first, then for the program. A program counts only if its entry is named like it, if
    // only one entry starts it, or if one of those that start it has the title. Returns null if no bundle is meant for
    // certain.
    const InstalledBundle* find(const ApplicationUse& use) const;

private:
    const InstalledBundle* byId(const std::string& desktopId) const;

    std::unordered_map<std::string_view, const InstalledBundle*> byId_;
    // The key is the program's name without directories.
    std::unordered_multimap<std::string_view, const InstalledBundle*> byProgram_;
};

} // namespace quillbox
