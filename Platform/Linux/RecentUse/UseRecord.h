#pragma once

#include "FileStamp.h"

#include <optional>
#include <string>
#include <vector>

namespace quillbox {

struct FileUse {
    // The path is absolute, in the file system's bytes, and without a slash at its end.
    std::string path;
    // Moments in records of use are seconds since 1970.
    double when = 0;
};

// Names an application in the ways in which its record does; the other fields are empty.
struct ApplicationUse {
    // The id includes the extension.
    std::string desktopId;
    // The name of its executable file, without directories.
    std::string program;
    // The name that users see.
    std::string title;
    double when = 0;
};

// The contents of one record, in any order. The same thing may occur several times.
struct RecentUses {
    std::vector<FileUse> files;
    std::vector<ApplicationUse> applications;

    // Adds a file by its absolute path or its "file:" URL. Another text or a moment before 1970 adds nothing.
    void addFile(const std::string& pathOrUrl, double when);
};

// One record in which a desktop or a program notes what was used when. The index of recent use has it checked for
// changes when a menu needs it; what was read is kept while the record's files stay the same. Other programs' records
// are only read, and one that can't be read is not reported.
class UseRecord {
public:
    virtual ~UseRecord() = default;
    // Reads the record again if its files have changed. Returns true if uses() may be different now.
    bool refresh();
    const RecentUses& uses() const { return uses_; }

protected:
    explicit UseRecord(std::vector<std::string> files) : files_(std::move(files)) { }
    const std::string& file() const { return files_.front(); }
    // Returns nothing if the record can't be read at the moment. What was read before stays then, and the next refresh
    // tries again.
    virtual std::optional<RecentUses> read() = 0;
    // For a record that this program writes: replaceUses() sets the present contents, and markFilesRead() says that the
    // files on disk already have them.
    void replaceUses(RecentUses uses);
    void markFilesRead();

private:
    // The first file is the record itself.
    std::vector<std::string> files_;
    std::vector<FileStamp> stamps_;
    RecentUses uses_;
    // Whether replaceUses() was called since the last refresh.
    bool isReplaced_ = false;
};

} // namespace quillbox
