#pragma once

#include "FileQuestion.h"

namespace quillbox {

// The helper process's answer to Kind::defaultApplication: the path of the desktop entry that the person's desktop
// opens that type of content with, by GIO. ENOENT where there is none. It may take for ever (FileHandler.h).
FileAnswer answerWithDefaultApplication(const FileQuestion& question);

} // namespace quillbox
