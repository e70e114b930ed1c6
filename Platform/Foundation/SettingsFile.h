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

// The file behind UserDefaults: one property list whose root is a dictionary. It is read when it has changed on disk
// and replaced whole, by way of a symbolic link too. What can't be read, or may be half written, is never written over;
// what is damaged for good is set aside and kept.
class SettingsFile {
public:
    explicit SettingsFile(std::string path) : path_(std::move(path)) { }

    const std::string& path() const { return path_; }

    // Reads the file if it has changed since, or could not be read the last time.
    void refresh();
    // What it held when it could be read last.
    const PropertyList::Dictionary& values() const { return values_; }
    // How often refresh() has found other values than were known, written by another program. A file that was removed
    // or is damaged does not count.
    std::uint64_t changesOfOthers() const { return changesOfOthers_; }
    // Why it can't be read now; none where it could be, or nothing is there.
    const std::optional<Error>& readError() const { return readError_; }

    Result<void> replace(PropertyList::Dictionary values);
    Result<void> remove();

    // Told that the file can't be read, once for each new cause, and of each damaged one that was set aside.
    std::function<void(const Error&)> onProblem;

private:
    // What changes when a file is written or replaced.
    struct Stamp {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };

    // None where nothing is there.
    Result<std::optional<Stamp>> stampNow() const;
    void finishReading(PropertyList::Dictionary values, std::optional<Stamp> stamp);
    void failReading(const Error& error);
    void meetDamage(const Stamp& stamp);
    bool isQuiet(const Stamp& stamp);

    std::string path_;
    PropertyList::Dictionary values_;
    // The file as it was read last.
    std::optional<Stamp> stamp_;
    bool wasRead_ = false;
    std::uint64_t changesOfOthers_ = 0;
    std::optional<Error> readError_;
    std::optional<Error> lastReport_;
    // A damaged file that changed a moment ago, and when it was first met as it is.
    std::optional<Stamp> unsettled_;
    std::chrono::milliseconds unsettledSince_ { 0 };
};

} // namespace quillbox
