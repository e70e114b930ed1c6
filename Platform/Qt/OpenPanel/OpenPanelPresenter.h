#pragma once

#include "NSOpenPanel.h"

#include <functional>
#include <memory>
#include <string>

class QWidget;

namespace quillbox {

// Shows open panels as dialogs of our own (OpenPanelDialog) on a window: that window takes no input meanwhile, the
// rest of the application does. Holds a panel until its completion was called. One presenter serves a session: it knows
// where the last panel was left, and the next one begins there.
class OpenPanelPresenter {
public:
    // Calls `completion` once, from the event loop, with NSOpenPanel::OK (the panel then has its URLs) or cancel. A
    // parent that is hidden, closed or deleted meanwhile ends the panel with cancel.
    void begin(std::shared_ptr<NSOpenPanel> panel, QWidget* parentWindow, std::function<void(int response)> completion);

private:
    // Shared with the panels that are up. Empty until one has ended.
    std::shared_ptr<std::string> lastDirectory_ = std::make_shared<std::string>();
};

} // namespace quillbox
