#include "NSControl.h"

#include "NSApplication.h"

namespace quillbox {

void NSControl::setEnabled(bool enabled)
{
    if (enabled == isEnabled_)
        return;
    isEnabled_ = enabled;
    setNeedsDisplay();
}

void NSControl::setFont(FontAttribute font)
{
    font_ = font;
    naturalSizeDidChange();
}

void NSControl::setTarget(const std::shared_ptr<NSObject>& target, const Selector* action)
{
    target_ = target;
    action_ = action;
}

bool NSControl::sendAction()
{
    return NSApplication::shared().sendAction(action_, target_.lock(), shared_from_this());
}

} // namespace quillbox
