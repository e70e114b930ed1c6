#pragma once

#include "URL.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillbox {

// An alias file is a desktop entry with Type=Link whose URL is a file: URL.

// Only files with this suffix are ever opened to find out whether they are alias files.
inline bool hasAliasSuffix(std::string_view name)
{
    return name.ends_with(".desktop");
}

// Returns the target of the regular file at `path` if that is an alias file; nothing if it is none or can't be read.
std::optional<URL> aliasTarget(const std::string& path);

} // namespace quillbox
