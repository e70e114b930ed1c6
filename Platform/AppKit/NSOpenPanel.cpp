#include "NSOpenPanel.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "WindowDisplay.h"

namespace quillbox {

void NSOpenPanel::beginSheetModal(NSWindow& parent, std::function<void(NSModalResponse)> completion)
{
    urls_.clear();
    NSApplication::shared().desktop().windows().beginOpenPanel(shared_from_this(), parent, std::move(completion));
}

} // namespace quillbox
