#pragma once

#include "NSGeometry.h"
#include "NSImage.h"

#include <optional>
#include <string>

namespace quillbox {

// A message with the application's icon and one default button ("OK") that stops the application until it is answered.
class NSAlert {
public:
    NSAlert();

    // Empty if the application's picture can't be found.
    const NSImage& icon() const { return icon_; }
    // The heading, shown in bold. It may have several lines.
    const std::string& messageText() const { return messageText_; }
    void setMessageText(std::string text) { messageText_ = std::move(text); }
    const std::string& informativeText() const { return informativeText_; }
    void setInformativeText(std::string text) { informativeText_ = std::move(text); }

    // The window's frame in points: the desktop's natural one until it is set. The height is at least what the texts
    // need at that width.
    NSRect windowFrame() const;
    void setWindowFrame(NSRect frame) { frame_ = frame; }
    bool hasWindowFrame() const { return frame_.has_value(); }

    // Shows the alert and waits for the answer. Menus do not open meanwhile.
    void runModal();
    static bool isAnyRunning();

private:
    NSImage icon_;
    std::string messageText_;
    std::string informativeText_;
    std::optional<NSRect> frame_;
};

} // namespace quillbox
