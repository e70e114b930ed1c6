#pragma once

#include "NSButton.h"
#include "NSControl.h"

namespace quillbox {

// A picture in a window.
class NSImageView : public NSControl {
public:
    enum class FrameStyle { none = 0, photo = 1 };

    const char* className() const override { return "NSImageView"; }
    NSSize naturalSize(double) const override { return image_.size(); }

    const NSImage& image() const { return image_; }
    void setImage(NSImage image)
    {
        image_ = std::move(image);
        naturalSizeDidChange();
    }
    FrameStyle imageFrameStyle() const { return frameStyle_; }
    void setImageFrameStyle(FrameStyle style)
    {
        frameStyle_ = style;
        setNeedsDisplay();
    }
    NSButton::ImageScaling imageScaling() const { return scaling_; }
    void setImageScaling(NSButton::ImageScaling scaling)
    {
        scaling_ = scaling;
        setNeedsDisplay();
    }

private:
    NSImage image_;
    FrameStyle frameStyle_ = FrameStyle::none;
    NSButton::ImageScaling scaling_ = NSButton::ImageScaling::proportionallyDown;
};

} // namespace quillbox
