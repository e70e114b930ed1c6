#pragma once

#include "NSGeometry.h"

#include <string>

namespace quillbox {

class NSView;

// Returns the views below `view` as text, one line each, with their frames in the coordinates of their superviews.
// Subviews are two spaces deeper:
//
//   NSButton "Apply" 300,590 130x32
//
// A line has the class, the identifier or the text that the view shows, then "x,y widthxheight" in points. Hidden views
// are marked "(hidden)". A scroll view that is there only for smaller screens is left out while it has nothing
// to scroll: its document stands in its place, or what is in that where the document has no identifier.
std::string viewDump(const NSView& view);
// Returns the same with all frames on the screen; `topLeft` is the top left corner of the topmost view there.
std::string viewDumpOnScreen(const NSView& topmost, NSPoint topLeft);

} // namespace quillbox
