#pragma once

#include "Result.h"
#include "UseRecord.h"

#include <functional>

namespace quillbox {

// Our own record of what was opened through Quillbox: a property list that only its owner can read, with applications
// by desktop id and files by path. It holds the 500 things used last and is written as a whole whenever one is added. A
// damaged file is kept beside the new one. A file that can't be read is left alone, and what is opened then is
// remembered until this process ends.
class OwnUseRecord final : public UseRecord {
public:
    static constexpr std::size_t kCapacity = 500;

    // `onError` is told of a problem with reading or writing once, and again when the problem changes.
    OwnUseRecord(const std::string& dataHome, std::function<void(const Error&)> onError);

    // Both record a use at the present time of the installed clock.
    void addFile(const std::string& path);
    void addApplication(const std::string& desktopId);

private:
    std::optional<RecentUses> read() override;
    void store(RecentUses uses);
    void report(const Error& error);

    std::function<void(const Error&)> onError_;
    std::optional<Error> reported_;
    bool isUnreadable_ = false;
};

} // namespace quillbox
