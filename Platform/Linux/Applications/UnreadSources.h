#pragma once

#include "Result.h"

#include <string>
#include <vector>

namespace quillbox {

// The files and directories that could not be read while desktop entries were looked for, as opposed to missing ones.
// Bundles that may come from them must stay as they are: once they can be read again, the next look finds their
// entries.
class UnreadSources {
public:
    // `error` has the path of the file or directory.
    void add(Error error) { errors_.push_back(std::move(error)); }

    // Whether the desktop entry at this path is one of them, or is in one of them.
    bool mayHold(const std::string& entryPath) const;
    const std::vector<Error>& errors() const { return errors_; }

private:
    std::vector<Error> errors_;
};

} // namespace quillbox
