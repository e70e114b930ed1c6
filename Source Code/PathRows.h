#pragma once

#include "MenuRows.h"
#include "NSMenuItemPlus.h"
#include "URL.h"

#include <memory>
#include <optional>
#include <string>

namespace quillbox {

// Rows that stand for entries of the file system. Nothing is read before it is shown: the row of a directory gets an
// empty submenu, which is filled when it opens.

enum class IfMissing { saySo, leaveOut };
enum class RowPlace { topLevel, inDirectory };

// Makes the row of one path, or one that says what is wrong with it. The value is null if the entry is to be left out:
// because it is hidden and in a directory, or missing and IfMissing::leaveOut is given. `title` replaces the name.
Made<std::shared_ptr<NSMenuItem>> pathRow(const URL& pathURL, const std::optional<std::string>& title, RowPlace place,
                                          IfMissing ifMissing, const RowOwner& owner, RowOptions options);

// Makes the sorted rows of one level of a directory. There is at least one, which may say what is wrong. With
// IfMissing::leaveOut there is no value if the directory can't be listed or is empty.
Made<std::optional<ItemList>> directoryRows(const URL& directoryURL, IfMissing ifMissing, const RowOwner& owner,
                                            RowOptions options);

// Makes the row of a path that is opened as a whole, whatever is there; it gets no submenu.
std::shared_ptr<NSMenuItemPlus> fileRow(const std::string& path, const RowOwner& owner, RowOptions options);

} // namespace quillbox
