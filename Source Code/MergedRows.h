#pragma once

#include "MenuRows.h"
#include "URL.h"

#include <memory>
#include <string>
#include <vector>

namespace quillbox {

// One row whose submenu has the contents of two groups of directories, one level deep: each group sorted where it has
// several directories, a separator between them, entries that follow their like left out. The row is that of the first
// directory of group 1 with entries, else of the first that exists; where none exists, a row that says so. Group 1
// without entries says `group1MissingMsg` in their place. Null only where group1URLs is empty.
Made<std::shared_ptr<NSMenuItem>> mergedRow(const std::vector<URL>& group1URLs, const std::vector<URL>& group2URLs,
                                            const std::string& group1MissingMsg, const RowOwner& owner,
                                            RowOptions options);

} // namespace quillbox
