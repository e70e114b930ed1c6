#pragma once

#include "Date.h"
#include "MenuRows.h"
#include "NSMenuDynamic.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillbox {

class MainMenuItem;

using PathList = std::vector<std::string>;

// Returns the applications and the documents used since the given moment, each list within its limit. They are sorted
// by name, or newest first with sortByDate.
std::pair<PathList, PathList> recentlyUsedPaths(Date lastUsedSince, std::int64_t maxApps, std::int64_t maxDocs,
                                                MenuOptionFlagsSv optionFlagsSv);

// Makes the rows of a recent-items menu for these paths. `item` is the configured item, or null if it is gone.
ItemList recentItemsRows(const NSMenuDynamic& menu, const PathList& apps, const PathList& docs,
                         const std::shared_ptr<MainMenuItem>& item, const RowOwner& owner);

} // namespace quillbox
