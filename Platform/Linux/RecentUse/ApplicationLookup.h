#pragma once

#include "BundleState.h"
#include "UseRecord.h"

#include <string_view>
#include <unordered_map>

namespace quillbox {

// Finds the bundle of an application that a record of use names in its own way. Made by the index of recent use; the
// applications must outlive it.
class ApplicationLookup {
public:
    explicit ApplicationLookup(const std::vector<InstalledApplication>& applications);

    // By desktop id; else by the program, where it is named like an entry or only one entry starts it, or one of those
    // that start it has the title. Null where no bundle is meant for sure.
    const InstalledApplication* find(const ApplicationUse& use) const;

private:
    const InstalledApplication* byId(const std::string& desktopId) const;

    std::unordered_map<std::string_view, const InstalledApplication*> byId_;
    // By its name, without directories.
    std::unordered_multimap<std::string_view, const InstalledApplication*> byProgram_;
};

} // namespace quillbox
