#pragma once

#include "NSMenu.h"

#include <string>

namespace quillbox {

// The menu as text, a line an item, submenus that have items below their item, two spaces deeper:
//
//   Downloads > [icon of /home/a/Downloads] (openTheClickedFileWithSender:)
//     notes.txt [icon of /home/a/Downloads/notes.txt] (openTheClickedFileWithSender:) "tool tip"
//   ---
//   Empty Directory -
//
// ">" marks a submenu, "-" a disabled row, "---" a separator; what a row does not have is left out. Line
// feeds in a title show as "\n".
std::string menuDump(const NSMenu& menu);

} // namespace quillbox
