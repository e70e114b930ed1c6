#include "NSButton.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "WindowDisplay.h"

namespace quillbox {

std::shared_ptr<NSButton> NSButton::checkbox(std::string title)
{
    auto button = std::make_shared<NSButton>();
    button->setButtonType(ButtonType::switchButton);
    button->setTitle(std::move(title));
    return button;
}

NSSize NSButton::naturalSize(double widthLimit) const
{
    return NSApplication::shared().desktop().windows().naturalSize(*this, widthLimit);
}

NSSize NSButton::leastSize() const
{
    // The style leaves more around a push button's title than the title needs.
    constexpr double kToSpare = 8;
    if (imagePosition_ == ImagePosition::imageOnly)
        return {};
    const double natural = naturalSize(kNoWidthLimit).width;
    return { buttonType_ == ButtonType::switchButton ? natural : natural - kToSpare, 0 };
}

void NSButton::setButtonType(ButtonType type)
{
    buttonType_ = type;
    naturalSizeDidChange();
}

void NSButton::setTitle(std::string title)
{
    title_ = std::move(title);
    naturalSizeDidChange();
}

void NSButton::setImage(std::optional<NSImage> image)
{
    image_ = std::move(image);
    naturalSizeDidChange();
}

void NSButton::setImagePosition(ImagePosition position)
{
    imagePosition_ = position;
    naturalSizeDidChange();
}

void NSButton::setImageScaling(ImageScaling scaling)
{
    imageScaling_ = scaling;
    setNeedsDisplay();
}

void NSButton::setBordered(bool bordered)
{
    isBordered_ = bordered;
    naturalSizeDidChange();
}

void NSButton::setOn(bool on)
{
    if (on == isOn_)
        return;
    isOn_ = on;
    setNeedsDisplay();
}

void NSButton::setKeyEquivalent(std::string key)
{
    keyEquivalent_ = std::move(key);
    setNeedsDisplay();
}

void NSButton::performClick()
{
    if (!isEnabled() || isHeld())
        return;
    if (buttonType_ == ButtonType::switchButton)
        setOn(!isOn_);
    sendAction();
}

} // namespace quillbox
