#pragma once

#include <string>

namespace quillbox {

// Whether a desktop entry or a program that the user met while browsing is started when it is opened, as the desktop
// would decide. `path` is canonical. It must be a file with the right to be executed. That right is trusted if the file
// belongs to the user or to root, nobody else may write it, and its mount keeps owners and modes as this machine set
// them: FAT and network shares call everything executable, and whoever prepared a removable disk chose the owners on
// it. Any other file starts only if the user has told the desktop to trust it (GIO's "metadata::trusted").
bool mayBeStarted(const std::string& path);

} // namespace quillbox
