#pragma once

#include "MainMenuItem.h"
#include "MenuRows.h"

#include <memory>

namespace quillbox {

// Makes the row of the top level for one configured item. There is always a row: if the item can't be shown, the row
// says so.
Made<std::shared_ptr<NSMenuItem>> topLevelRow(const std::shared_ptr<MainMenuItem>& item, const RowOwner& owner);

} // namespace quillbox
