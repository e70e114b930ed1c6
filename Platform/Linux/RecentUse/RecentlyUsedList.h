#pragma once

#include "UseRecord.h"

namespace quillbox {

// The list of recently used files that programs of all desktops share, recently-used.xbel: a bookmark for each file,
// with the programs that opened it. A file was last used at the newest of "modified", "visited" and "added", a program
// when it last opened one. Bookmarks of other machines, of private programs and without a date are left out. Damage
// costs no more than what lies behind it.
class RecentlyUsedList final : public UseRecord {
public:
    explicit RecentlyUsedList(const std::string& dataHome) : UseRecord({ dataHome + "/recently-used.xbel" }) { }

private:
    std::optional<RecentUses> read() override;
};

} // namespace quillbox
