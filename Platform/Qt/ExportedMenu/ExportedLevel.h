#pragma once

#include "ExportedTree.h"
#include "NSMenu.h"

#include <cstddef>
#include <vector>

namespace quillbox {

// What a host is given of an open menu of the model. Pure, but for looking up icons.

ExportedRow::Kind exportedKind(const NSMenuItem& item);
QString exportedTitle(const NSMenuItem& item);

// How many items a level shows before rows end it that go on with as many others each: panels take a noticeable time
// and much memory for each row. Levels go on beside each other and not one inside the other, because hosts that unfold
// them in one column have no room for many.
inline constexpr std::size_t kItemsPerExportedLevel = 200;

// The rows of the level that hangs on `super`: items of `menu`, from `super.place` where that is a row that goes on
// with a level.
std::vector<ExportedRow> exportedLevel(const NSMenu& menu, const ExportedRow& super);

} // namespace quillbox
