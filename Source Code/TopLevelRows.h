#pragma once

#include "MainMenuItem.h"
#include "MenuRows.h"

#include <memory>

namespace quillbox {

// The row of the top level for one configured item. There is always one: what can't be shown is a row that says so.
Made<std::shared_ptr<NSMenuItem>> topLevelRow(const std::shared_ptr<MainMenuItem>& item, const RowOwner& owner);

} // namespace quillbox
