#pragma once

#include "NSMenu.h"

#include <string>

namespace quillbox {

// Returns the menu as text, one line an item. A submenu that has items follows below its item, two spaces deeper:
//
//   Downloads > [icon of /home/a/Downloads] (openTheClickedFileWithSender:)
//     notes.txt [icon of /home/a/Downloads/notes.txt] (openTheClickedFileWithSender:) "tool tip"
//   ---
//   Empty Directory -
//
// ">" marks a submenu, "-" a disabled row, "---" a separator; what a row does not have is left out. Line feeds in a
// title are written as "\\n".
std::string menuDump(const NSMenu& menu);

} // namespace quillbox
