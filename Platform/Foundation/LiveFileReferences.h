#pragma once

#include "FileIdentity.h"

#include <functional>
#include <optional>
#include <string>

namespace quillbox {

// Returns the present path of a file that some FileReferenceURL of this process follows and that `isWanted` accepts, or
// nothing if no reference follows such a file. Resolving a bookmark asks this before it searches.
std::optional<std::string> pathOfLiveReference(const std::function<bool(const FileIdentity&)>& isWanted);

} // namespace quillbox
