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

// The applications and the documents used since the cut-off, each list within its limit; by name, or newest first
// with sortByDate.
std::pair<PathList, PathList> recentlyUsedPaths(Date lastUsedSince, std::int64_t maxApps, std::int64_t maxDocs,
                                                MenuOptionFlagsSv optionFlagsSv);

// The rows of a recent-items menu with these paths. `item` is the configured one; null where it is gone.
ItemList recentItemsRows(const NSMenuDynamic& menu, const PathList& apps, const PathList& docs,
                         const std::shared_ptr<MainMenuItem>& item, const RowOwner& owner);

} // namespace quillbox
