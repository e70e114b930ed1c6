#include "UnreadSources.h"

#include <algorithm>

namespace quillbox {

bool UnreadSources::mayHold(const std::string& entryPath) const
{
    // The same scan makes both texts, so equal texts mean the same place.
    return std::any_of(errors_.begin(), errors_.end(), [&](const Error& error) {
        return entryPath == error.path || entryPath.starts_with(error.path + '/');
    });
}

} // namespace quillbox
