#pragma once

#include "CAKeyframeAnimation.h"
#include "CATransaction.h"
#include "CGColor.h"
#include "Clock.h"

#include <any>
#include <functional>
#include <memory>

namespace quillbox {

// What a view draws besides its own content: a border, and contents that an animation goes through. The view owns its
// layer. An animation runs on the installed clock; a layer that shows none has no timer. Destroying the layer ends its
// animation, which counts as completed.
class CALayer {
public:
    CALayer() = default;
    CALayer(const CALayer&) = delete;
    CALayer& operator=(const CALayer&) = delete;

    // In points; the border is drawn inside the view's bounds.
    double borderWidth() const { return borderWidth_; }
    CGColor borderColor() const { return borderColor_; }
    void setBorder(double width, CGColor colour);
    // Whether what extends beyond the bounds is cut off.
    bool masksToBounds() const { return masksToBounds_; }
    void setMasksToBounds(bool masks) { masksToBounds_ = masks; }

    // Returns the running animation's present value, which is an NSImage on this platform; empty if none is running.
    const std::any& presentationContents() const;

    // Runs the animation from its first value and ends an earlier one. An animation without values or duration ends at
    // once.
    void add(CAKeyframeAnimation animation);
    bool isAnimating() const { return running_ != nullptr; }

    // Called whenever what is shown has changed. The view that owns the layer sets it.
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
