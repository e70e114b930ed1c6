#pragma once

#include "NSOpenPanel.h"

#include <functional>
#include <memory>

class QWidget;

namespace quillbox {

// Shows open panels as dialogs of our own (OpenPanelDialog) on a window: that window takes no input meanwhile, the
// rest of the application does. Holds a panel until its completion was called.
class OpenPanelPresenter {
public:
    // Calls `completion` once, from the event loop, with NSOpenPanel::OK (the panel then has its URLs) or cancel. A
    // parent that is hidden, closed or deleted meanwhile ends the panel with cancel.
    static void begin(std::shared_ptr<NSOpenPanel> panel, QWidget* parentWindow,
                      std::function<void(int response)> completion);
};

} // namespace quillbox
