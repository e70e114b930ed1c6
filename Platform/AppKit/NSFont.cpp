#include "NSFont.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "WindowDisplay.h"

namespace quillbox {

double NSFont::userFontSize()
{
    return NSApplication::shared().desktop().windows().fontSize();
}

} // namespace quillbox
