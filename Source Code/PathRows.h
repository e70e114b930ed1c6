#pragma once

#include "MenuRows.h"
#include "NSMenuItemPlus.h"
#include "URL.h"

#include <memory>
#include <optional>
#include <string>

namespace quillbox {

// Rows that stand for entries of the file system. Nothing is read before it is shown: a directory's row gets a
// submenu without items, which is filled when it opens.

enum class IfMissing { saySo, leaveOut };
enum class RowPlace { topLevel, inDirectory };

// The row of one path, or one that says what is wrong with it. Null where the entry is to be left out: hidden and in
// a directory, or missing with IfMissing::leaveOut. `title` stands in for the name.
Made<std::shared_ptr<NSMenuItem>> pathRow(const URL& pathURL, const std::optional<std::string>& title, RowPlace place,
                                          IfMissing ifMissing, const RowOwner& owner, RowOptions options);

// One level of a directory, sorted. At least one row, which may say what is wrong; with IfMissing::leaveOut none
// where the directory can't be listed or is empty.
Made<std::optional<ItemList>> directoryRows(const URL& directoryURL, IfMissing ifMissing, const RowOwner& owner,
                                            RowOptions options);

// The row of a path that is opened as a whole, whatever is there: it gets no submenu.
std::shared_ptr<NSMenuItemPlus> fileRow(const std::string& path, const RowOwner& owner, RowOptions options);

} // namespace quillbox
