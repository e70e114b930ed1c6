#pragma once

#include "MenuRows.h"
#include "URL.h"

#include <memory>
#include <string>
#include <vector>

namespace quillbox {

// Makes one row whose submenu has the contents of two groups of directories, one level deep. The entries of a group
// with several directories are sorted together, a separator stands between the groups, and repeated entries are left
// out. The row itself is that of the first directory in group 1 with entries, otherwise of the first one that exists;
// if none exists, it is a row that says so. If group 1 has no entries, `group1MissingMsg` takes their place unless it
// is empty. The value is null only if group1URLs is empty.
Made<std::shared_ptr<NSMenuItem>> mergedRow(const std::vector<URL>& group1URLs, const std::vector<URL>& group2URLs,
                                            const std::string& group1MissingMsg, const RowOwner& owner,
                                            RowOptions options);

} // namespace quillbox
