#pragma once

#include "UseRecord.h"

namespace quillbox {

// Plasma's record of used resources, the SQLite database of its activity manager: files by path, applications as
// "applications:<desktop id>". Another process may write the database at any time. It is read in one short transaction
// that never waits and never makes the writer wait; if it is locked, it is read the next time. No file is made beside
// it.
class PlasmaUseRecord final : public UseRecord {
public:
    explicit PlasmaUseRecord(const std::string& dataHome);

private:
    std::optional<RecentUses> read() override;
};

} // namespace quillbox
