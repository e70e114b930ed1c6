#pragma once

#include "NSImage.h"

#include <utility>

namespace quillbox {

// Where a picture comes from, counted: how many sources live, and how often any was asked what it shows.
class CountedSource final : public ImageSource {
public:
    explicit CountedSource(ImageContent content = ThemedImage {}) : content_(std::move(content)) { ++alive; }
    ~CountedSource() override { --alive; }
    CountedSource(const CountedSource&) = delete;
    CountedSource& operator=(const CountedSource&) = delete;

    ImageContent content() const override
    {
        ++asked;
        return content_;
    }
    std::string name() const override { return "counted"; }

    static inline int alive = 0;
    static inline int asked = 0;

private:
    ImageContent content_;
};

} // namespace quillbox
