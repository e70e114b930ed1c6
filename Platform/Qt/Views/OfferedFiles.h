#pragma once

#include <string>
#include <vector>

class QMimeData;

namespace quillbox {

// Files that another program offers, by a drag or on the clipboard. What a drag offers is looked at while it hovers,
// which costs nothing; data is asked for once, when the person has dropped or pasted.

bool offersFiles(const QMimeData& drag);

// The texts of the files' addresses, with the bytes that came; `windowId` is the native window that they come to. Waits
// a second for a program that does not answer and a few for one that is still at it; empty then. On other displays than
// X11 the toolkit has bounds of its own.
std::vector<std::string> droppedFiles(const QMimeData& drag, unsigned long windowId);
std::vector<std::string> copiedFiles(unsigned long windowId);

} // namespace quillbox
