#pragma once

#include "InstalledBundles.h"
#include "UseRecord.h"

#include <string_view>
#include <unordered_map>

namespace quillbox {

// Finds the bundle of an application that a record of use names in its own way. Made by the index of recent use; the
// bundles must outlive it.
class ApplicationLookup {
public:
    explicit ApplicationLookup(const std::vector<InstalledBundle>& bundles);

    // By desktop id; else by the program, where it is named like an entry or only one entry starts it, or one of those
    // that start it has the title. Null where no bundle is meant for sure.
    const InstalledBundle* find(const ApplicationUse& use) const;

private:
    const InstalledBundle* byId(const std::string& desktopId) const;

    std::unordered_map<std::string_view, const InstalledBundle*> byId_;
    // By its name, without directories.
    std::unordered_multimap<std::string_view, const InstalledBundle*> byProgram_;
};

} // namespace quillbox
