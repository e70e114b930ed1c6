#pragma once

#include "PropertyList.h"
#include "Result.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

namespace quillbox {

// The file behind UserDefaults: one property list whose root is a dictionary. It is read when it has changed on disk,
// and replaced as a whole; a symbolic link in its place is followed and stays. A file that can't be read, or that may
// be half written, is never overwritten; one that is damaged for good is set aside and kept.
class SettingsFile {
public:
    explicit SettingsFile(std::string path) : path_(std::move(path)) { }

    const std::string& path() const { return path_; }

    // Reads the file if it has changed since it was last read, or could not be read then.
    void refresh();
    // The contents when the file could last be read.
    const PropertyList::Dictionary& values() const { return values_; }
    // How often refresh() has found other values than were known, written by another program. A file that was removed
    // or is damaged does not count.
    std::uint64_t changesOfOthers() const { return changesOfOthers_; }
    // Why it can't be read now; none where it could be, or nothing is there.
    const std::optional<Error>& readError() const { return readError_; }

    Result<void> replace(PropertyList::Dictionary values);
    Result<void> remove();

    // Called when the file can't be read, once for each new cause, and when a damaged file was set aside.
    std::function<void(const Error&)> onProblem;

private:
    // The properties that change when a file is written or replaced.
    struct Stamp {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };

    // Returns no stamp if there is no file.
    Result<std::optional<Stamp>> stampNow() const;
    void finishReading(PropertyList::Dictionary values, std::optional<Stamp> stamp);
    void failReading(const Error& error);
    void meetDamage(const Stamp& stamp);
    bool isQuiet(const Stamp& stamp);

    std::string path_;
    PropertyList::Dictionary values_;
    // The stamp of the file when it was last read.
    std::optional<Stamp> stamp_;
    bool wasRead_ = false;
    std::uint64_t changesOfOthers_ = 0;
    std::optional<Error> readError_;
    std::optional<Error> lastReport_;
    // The stamp of a damaged file that changed a moment ago, and the uptime at which it was first met with this stamp.
    std::optional<Stamp> unsettled_;
    std::chrono::milliseconds unsettledSince_ { 0 };
};

} // namespace quillbox
