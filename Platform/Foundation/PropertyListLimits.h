#pragma once

#include <cstddef>

// The limits that readers and writers of property lists share in either form, so that whatever is written can be read
// again.
namespace quillbox::propertylist {

// Values nested deeper than this are refused, so that no stack is exhausted.
inline constexpr int kMaximumDepth = 256;

// Counts what a list takes in memory: a small file may repeat one large value, or hold millions of empty ones.
class Budget {
public:
    // Roughly what one value takes, and the most that a whole list may take, in bytes.
    static constexpr std::size_t kValueCost = 128;
    static constexpr std::size_t kMaximum = std::size_t { 128 } << 20;

    // Counts a value without the text or data that it holds. Returns false if the list has become too large.
    bool addValue() { return addBytes(kValueCost); }
    // Counts the bytes of a text (in UTF-8), of data or of a key. Returns false if the list has become too large.
    bool addBytes(std::size_t count)
    {
        if (count > kMaximum - spent_)
            return false;
        spent_ += count;
        return true;
    }

private:
    std::size_t spent_ = 0;
};

} // namespace quillbox::propertylist
