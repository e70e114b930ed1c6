#pragma once

#include "FileStamp.h"

#include <optional>
#include <string>
#include <vector>

namespace quillbox {

struct FileUse {
    // The path is absolute, in the file system's bytes, without a slash at its end.
    std::string path;
    // Moments in records of use are seconds since 1970.
    double when = 0;
};

// Names an application in the ways that its record tells; the others are empty.
struct ApplicationUse {
    // The id has its extension.
    std::string desktopId;
    // The name of its executable file, without directories.
    std::string program;
    // The name that people see.
    std::string title;
    double when = 0;
};

// What one record tells, in any order; the same thing may be there several times.
struct RecentUses {
    std::vector<FileUse> files;
    std::vector<ApplicationUse> applications;

    // Adds a file by its absolute path or its "file:" URL. Another text or a moment before 1970 adds nothing.
    void addFile(const std::string& pathOrUrl, double when);
};

// One place where a desktop or a program notes what was used when. The index of recent use asks it to look again when a
// menu needs it; it keeps what it read for as long as the files it comes from stay the same. Records are only read;
// nothing is said of one that can't be read.
class UseRecord {
public:
    virtual ~UseRecord() = default;
    // Reads the record again if its files have changed; true where uses() may be different now.
    bool refresh();
    const RecentUses& uses() const { return uses_; }

protected:
    explicit UseRecord(std::vector<std::string> files) : files_(std::move(files)) { }
    const std::string& file() const { return files_.front(); }
    // None where it can't be read at the moment: what was read before stays, and the next refresh tries again.
    virtual std::optional<RecentUses> read() = 0;
    // For a record that this program writes: these tell what it is now, and that the files on disk are its own work.
    void replaceUses(RecentUses uses);
    void markFilesRead();

private:
    // The first one is the record itself.
    std::vector<std::string> files_;
    std::vector<FileStamp> stamps_;
    RecentUses uses_;
    // Whether replaceUses() was called since the last refresh.
    bool isReplaced_ = false;
};

} // namespace quillbox
