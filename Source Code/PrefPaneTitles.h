#pragma once

#include <optional>
#include <string_view>

namespace quillbox {

// The name that a preference pane of this file name (extension included, case matters) is known by; none
// where the file name says it well enough or the bundle has to be asked.
std::optional<std::string_view> prefPaneTitle(std::string_view fileName);

} // namespace quillbox
