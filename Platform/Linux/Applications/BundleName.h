#pragma once

#include <string>
#include <string_view>

namespace quillbox {

// The file name of a bundle that people know as `title` (valid UTF-8): what a file name can't have is replaced by what
// looks like it, and the title is cut at a character's end where the whole would not fit. `distinction` is added in
// brackets, after a blank, where another bundle has the plain name; empty for none. `extension` with its dot.
std::string bundleName(std::string_view title, std::string_view distinction, std::string_view extension);

} // namespace quillbox
