#pragma once

#include "Result.h"

#include <string>
#include <vector>

namespace quillbox {

// What could not be read while desktop entries were looked for, as opposed to what was not there. Bundles that may come
// from it must stay as they are: after a passing error the next look finds their entries again.
class UnreadSources {
public:
    // `error` names the file or the directory.
    void add(Error error) { errors_.push_back(std::move(error)); }

    // Whether the desktop entry at this path is one of them or lies in one of them.
    bool mayHold(const std::string& entryPath) const;
    const std::vector<Error>& errors() const { return errors_; }

private:
    std::vector<Error> errors_;
};

} // namespace quillbox
