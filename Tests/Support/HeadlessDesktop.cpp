#include "HeadlessDesktop.h"

#include "NSWindow.h"

namespace quillbox {

HeadlessDesktop::~HeadlessDesktop()
{
    NSWindow::closeAll();
}

void HeadlessDesktop::runModal(const NSAlert& alert)
{
    alerts.push_back(alert);
    if (duringAlert)
        duringAlert();
}

} // namespace quillbox
