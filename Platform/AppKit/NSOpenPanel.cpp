#include "NSOpenPanel.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "WindowDisplay.h"

namespace quillbox {

NSOpenPanel::NSOpenPanel() : NSWindow(std::make_shared<NSViewController>())
{
    contentViewController()->setView(std::make_shared<NSView>());
}

void NSOpenPanel::beginSheetModal(NSWindow& parent, std::function<void(NSModalResponse)> completion)
{
    urls_.clear();
    attachTo(parent, std::move(completion));
    const auto self = std::static_pointer_cast<NSOpenPanel>(shared_from_this());
    NSApplication::shared().desktop().windows().beginOpenPanel(
        self, parent, [self, heldWindow = parent.weak_from_this()](NSModalResponse response) {
            // A window that was closed has ended its sheet by then.
            if (const auto held = heldWindow.lock())
                held->endSheet(self, response);
        });
}

} // namespace quillbox
