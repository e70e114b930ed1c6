#pragma once

#include "URL.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillbox {

// Alias files: desktop entries of Type=Link whose URL is a file: URL.

// Only files of this suffix are ever opened to see whether they are one.
inline bool hasAliasSuffix(std::string_view name)
{
    return name.ends_with(".desktop");
}

// Where the regular file at `path` leads; none where it is no alias file or can't be read.
std::optional<URL> aliasTarget(const std::string& path);

} // namespace quillbox
