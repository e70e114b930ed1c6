#pragma once

#include "UseRecord.h"

namespace quillbox {

// The list of recently used files that the programs of all desktops share, recently-used.xbel. It has a bookmark for
// each file with the programs that opened it. A file was last used at the latest of "modified", "visited" and "added",
// a program when it last opened a file. Bookmarks of other machines, of private programs and without a date are left
// out. In a damaged list, everything before the damage is read.
class RecentlyUsedList final : public UseRecord {
public:
    explicit RecentlyUsedList(const std::string& dataHome) : UseRecord({ dataHome + "/recently-used.xbel" }) { }

private:
    std::optional<RecentUses> read() override;
};

} // namespace quillbox
