#pragma once

#include <any>
#include <chrono>
#include <memory>
#include <vector>

namespace quillbox {

// Takes one property of a layer through a list of values, each for an equal part of the duration. It is a plain value;
// the layer that it is added to runs it.
class CAKeyframeAnimation {
public:
    // The only property that layers can animate.
    static constexpr const char* contentsKeyPath = "contents";

    explicit CAKeyframeAnimation(const char* keyPath) : keyPath_(keyPath) { }

    const char* keyPath() const { return keyPath_; }
    const std::vector<std::any>& values() const { return values_; }
    void setValues(std::vector<std::any> values) { values_ = std::move(values); }
    std::chrono::milliseconds duration() const { return duration_; }
    void setDuration(std::chrono::milliseconds duration) { duration_ = duration; }

private:
    const char* keyPath_;
    std::vector<std::any> values_;
    std::chrono::milliseconds duration_ {};
};

} // namespace quillbox
