#pragma once

#include "FileQuestion.h"

#include <string>

namespace quillbox {

// The helper process's answer to Kind::defaultApplication: the path of the desktop entry that the person's desktop
// opens that type of content with, by GIO, or those of all that can. ENOENT where there is none. It may take for ever
// (FileHandler.h).
FileAnswer answerWithDefaultApplication(const FileQuestion& question);

// Returns the paths of the desktop entries that open the content type, the default one first, each ended by a NUL.
std::string entriesOfHandlers(const std::string& contentType);

} // namespace quillbox
