#pragma once

#include "UseRecord.h"

namespace quillbox {

// Plasma's record of used resources, the SQLite database of its activity manager: files by path, applications as
// "applications:<desktop id>". The database is written by another process at any time; it is read in one short
// transaction that never waits and never makes the writer wait, and left for the next time where it is locked. No file
// is made beside it.
class PlasmaUseRecord final : public UseRecord {
public:
    explicit PlasmaUseRecord(const std::string& dataHome);

private:
    std::optional<RecentUses> read() override;
};

} // namespace quillbox
