#pragma once

#include "CAKeyframeAnimation.h"
#include "CATransaction.h"
#include "CGColor.h"
#include "Clock.h"

#include <any>
#include <functional>
#include <memory>

namespace quillbox {

// What a view draws besides its own content: a border, and contents that an animation may go through. Owned by
// its view. An animation runs on the installed clock; at rest a layer has no timer. Destroying the layer ends
// its animation, which counts as completed.
class CALayer {
public:
    CALayer() = default;
    CALayer(const CALayer&) = delete;
    CALayer& operator=(const CALayer&) = delete;

    // Points, drawn inside the view's bounds.
    double borderWidth() const { return borderWidth_; }
    CGColor borderColor() const { return borderColor_; }
    void setBorder(double width, CGColor colour);
    // Whether what goes past the bounds is cut off.
    bool masksToBounds() const { return masksToBounds_; }
    void setMasksToBounds(bool masks) { masksToBounds_ = masks; }

    // What is shown now: the running animation's value, else nothing. On this platform an NSImage.
    const std::any& presentationContents() const;

    // Runs it from its first value; an earlier one ends. One without values or duration ends at once.
    void add(CAKeyframeAnimation animation);
    bool isAnimating() const { return running_ != nullptr; }

    // Called whenever what is shown has changed; set by the view that owns the layer.
    void setDisplayHandler(std::function<void()> handler) { displayHandler_ = std::move(handler); }

private:
    struct Running {
        explicit Running(CAKeyframeAnimation whole) : animation(std::move(whole)) { }

        CAKeyframeAnimation animation;
        std::shared_ptr<CATransaction::Token> transaction;
        std::chrono::milliseconds began {};
        std::size_t index = 0;
        std::unique_ptr<Clock::Timer> timer;
    };

    void waitForNextValue();
    void step();
    void changed();

    double borderWidth_ = 0;
    CGColor borderColor_ = CGColor::clear;
    bool masksToBounds_ = false;
    std::unique_ptr<Running> running_;
    std::function<void()> displayHandler_;
};

} // namespace quillbox
