#include "CALayer.h"

#include "Check.h"

#include <algorithm>
#include <string_view>

namespace quillbox {

void CALayer::setBorder(double width, CGColor colour)
{
    if (borderWidth_ == width && borderColor_ == colour)
        return;
    borderWidth_ = width;
    borderColor_ = colour;
    changed();
}

const std::any& CALayer::presentationContents() const
{
    static const std::any nothing;
    return running_ ? running_->animation.values()[running_->index] : nothing;
}

void CALayer::add(CAKeyframeAnimation animation)
{
    QB_CHECK(std::string_view(animation.keyPath()) == CAKeyframeAnimation::contentsKeyPath);
    running_.reset();
    if (animation.values().empty() || animation.duration().count() <= 0)
        return;
    running_ = std::make_unique<Running>(std::move(animation));
    running_->transaction = CATransaction::currentToken();
    running_->began = Clock::current().uptime();
    waitForNextValue();
    changed();
}

void CALayer::waitForNextValue()
{
    // The time is counted from the beginning of the animation, so that delays do not add up.
    const auto count = static_cast<std::chrono::milliseconds::rep>(running_->animation.values().size());
    const auto next = static_cast<std::chrono::milliseconds::rep>(running_->index + 1);
    const auto due = running_->began + running_->animation.duration() * next / count;
    const auto delay = std::max(due - Clock::current().uptime(), std::chrono::milliseconds(0));
    running_->timer = Clock::current().after(delay, [this] { step(); });
}

void CALayer::step()
{
    const auto count = running_->animation.values().size();
    const auto passed = Clock::current().uptime() - running_->began;
    const auto reached = static_cast<std::size_t>(std::max(passed.count(), std::chrono::milliseconds::rep { 0 }))
        * count / static_cast<std::size_t>(running_->animation.duration().count());
    // A display that is behind skips values, so that the animation does not take longer.
    running_->index = std::max(running_->index + 1, reached);
    if (running_->index < count) {
        waitForNextValue();
        changed();
        return;
    }
    // The completion may destroy this layer, so it is the last thing that happens.
    const std::unique_ptr<Running> ended = std::move(running_);
    changed();
}

void CALayer::changed()
{
    if (displayHandler_)
        displayHandler_();
}

} // namespace quillbox
