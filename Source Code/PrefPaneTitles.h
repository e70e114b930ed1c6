#pragma once

#include <optional>
#include <string_view>

namespace quillbox {

// Returns the usual name of the preference pane with this file name (with its extension; case matters). Nothing is
// returned if the file name is good enough or the bundle itself has to be asked.
std::optional<std::string_view> prefPaneTitle(std::string_view fileName);

} // namespace quillbox
