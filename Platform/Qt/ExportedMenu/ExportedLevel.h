#pragma once

#include "ExportedTree.h"
#include "NSMenu.h"

#include <cstddef>
#include <vector>

namespace quillbox {

// These functions make the copies of an open menu that hosts get. They have no side effects, except that icons are
// looked up.

ExportedRow::Kind exportedKind(const NSMenuItem& item);
QString exportedTitle(const NSMenuItem& item);

// How many items a level shows. After them it ends in rows that each lead to as many further items, because panels take
// noticeable time and much memory for each row. These rows are beside each other, not one inside the other, because
// hosts that unfold levels in one column have no room for many.
inline constexpr std::size_t kItemsPerExportedLevel = 200;

// Returns the rows of the level below `super`: the items of `menu`, beginning with `super.place` if `super` is one of
// the rows that lead to further items.
std::vector<ExportedRow> exportedLevel(const NSMenu& menu, const ExportedRow& super);

} // namespace quillbox
