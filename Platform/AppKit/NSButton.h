#pragma once

#include "NSControl.h"
#include "NSImage.h"

#include <optional>

namespace quillbox {

// A push button or a checkbox. The display calls performClick(); a checkbox changes its state before it sends its
// action.
class NSButton : public NSControl {
public:
    enum class ButtonType { switchButton = 3, momentaryPushIn = 7 };
    enum class ImagePosition { noImage = 0, imageOnly = 1 };
    enum class ImageScaling { proportionallyDown = 0, axesIndependently = 1, none = 2, proportionallyUpOrDown = 3 };

    // Makes a checkbox with that title.
    static std::shared_ptr<NSButton> checkbox(std::string title);

    const char* className() const override { return "NSButton"; }
    NSSize naturalSize(double widthLimit) const override;
    NSSize leastSize() const override;

    ButtonType buttonType() const { return buttonType_; }
    void setButtonType(ButtonType type);
    const std::string& title() const { return title_; }
    void setTitle(std::string title);
    const std::optional<NSImage>& image() const { return image_; }
    void setImage(std::optional<NSImage> image);
    ImagePosition imagePosition() const { return imagePosition_; }
    void setImagePosition(ImagePosition position);
    ImageScaling imageScaling() const { return imageScaling_; }
    void setImageScaling(ImageScaling scaling);
    bool isBordered() const { return isBordered_; }
    void setBordered(bool bordered);
    // Whether a checkbox is checked; it has no meaning for a push button.
    bool isOn() const { return isOn_; }
    void setOn(bool on);
    // The keys that press the button wherever the keyboard focus is in its window: "\r" for Return, "\x1b" for Escape,
    // or both in one text.
    const std::string& keyEquivalent() const { return keyEquivalent_; }
    void setKeyEquivalent(std::string key);

    // The user pressed the button. Nothing happens while it is disabled or a sheet blocks its window.
    void performClick();

private:
    ButtonType buttonType_ = ButtonType::momentaryPushIn;
    std::string title_;
    std::optional<NSImage> image_;
    ImagePosition imagePosition_ = ImagePosition::noImage;
    ImageScaling imageScaling_ = ImageScaling::proportionallyDown;
    bool isBordered_ = true;
    bool isOn_ = false;
    std::string keyEquivalent_;
};

} // namespace quillbox
