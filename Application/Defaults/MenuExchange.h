#pragma once

#include "MainMenuItem.h"
#include "PropertyList.h"
#include "Result.h"

#include <string>
#include <vector>

namespace quillbox {

// The menu as people carry it to another machine: a dictionary that can be written as XML or JSON and edited by hand.
//
//   "quillboxMenu": 1, the version of this form
//   "items": of each, from the top: "kind"; "title"; "path" of a picked file, with "~/" for the home directory, or as a
//            file URL where it is no text; "options", a list of names; of recent items "newerThan" (a date, in JSON
//            a text) and "count"
//
// Bookmarks are left out, since they hold for one machine: they are made anew.

PropertyList exportedMenu(const MainMenuItem::List& items);

struct ImportedMenu {
    MainMenuItem::List items;
    // The paths at which nothing is now. Their items are in the list all the same, and work once something is there.
    std::vector<std::string> missingPaths;
};

// All or nothing: an error names the item, counted from 1, and what is wrong with it.
Result<ImportedMenu> importedMenu(const PropertyList& menu);

} // namespace quillbox
