#pragma once

#include <string>

namespace quillbox {

// Whether a desktop entry or a program that somebody came upon while browsing is started when it is opened, as the
// desktop would do; `path` is canonical. It must be a file that may be executed. That is believed where it belongs to
// the person or to root, nobody else may write it, and its mount keeps owners and modes as this machine gave them: FAT
// and shares call everything executable, and whoever made a stick chose the owners on it. Anything else starts only
// where the person has told the desktop to trust it (GIO's "metadata::trusted").
bool mayBeStarted(const std::string& path);

} // namespace quillbox
