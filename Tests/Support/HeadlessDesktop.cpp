#include "HeadlessDesktop.h"

#include "NSApplication.h"
#include "NSWindow.h"

namespace quillbox {

HeadlessDesktop::HeadlessDesktop()
{
    NSApplication::shared().setDesktop(this);
}

HeadlessDesktop::~HeadlessDesktop()
{
    NSWindow::closeAll();
    NSApplication::shared().setDesktop(nullptr);
}

void HeadlessDesktop::runModal(const NSAlert& alert)
{
    alerts.push_back(alert);
    if (duringAlert)
        duringAlert();
}

} // namespace quillbox
