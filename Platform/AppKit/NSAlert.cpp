#include "NSAlert.h"

#include "Desktop.h"
#include "NSApplication.h"

namespace quillbox {

namespace {
    int runningAlerts = 0;
}

NSAlert::NSAlert() : icon_(NSImage::imageNamed("Quillbox Icon").value_or(NSImage())) { }

NSRect NSAlert::windowFrame() const
{
    return frame_ ? *frame_ : NSApplication::shared().desktop().naturalFrame(*this);
}

void NSAlert::runModal()
{
    ++runningAlerts;
    NSApplication::shared().desktop().runModal(*this);
    --runningAlerts;
}

bool NSAlert::isAnyRunning()
{
    return runningAlerts > 0;
}

} // namespace quillbox
