#pragma once

#include "UseRecord.h"

namespace quillbox {

// GNOME Shell's record of when applications were last seen in use, application_state. It names them by desktop id.
// Older shells keep them in a <context> element.
class GnomeUseRecord final : public UseRecord {
public:
    explicit GnomeUseRecord(const std::string& dataHome)
        : UseRecord({ dataHome + "/gnome-shell/application_state" }) { }

private:
    std::optional<RecentUses> read() override;
};

} // namespace quillbox
