#pragma once

#include <string>
#include <vector>

class QMimeData;

namespace quillbox {

// Files that another program offers, by a drag or on the clipboard. While a drag hovers, only the types that it offers
// are looked at, which costs nothing. The data is asked for once, after the user has dropped or pasted.

bool offersFiles(const QMimeData& drag);

// Returns the texts of the files' URLs, byte for byte. `windowId` is the native window that receives them. A program
// that does not answer is waited for one second, and one that is still sending for a few; the result is empty then. On
// displays other than X11 the toolkit has its own limits. A drag that began in this program (`isOwn`) has its data at
// hand; to ask for it as another program would, this one would have to wait for itself.
std::vector<std::string> droppedFiles(const QMimeData& drag, bool isOwn, unsigned long windowId);
std::vector<std::string> copiedFiles(unsigned long windowId);

} // namespace quillbox
