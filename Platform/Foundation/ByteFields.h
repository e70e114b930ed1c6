#pragma once

#include "Data.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace quillbox {

// Writes a sequence of fields as bytes, with big-endian numbers. Bookmarks and the messages between our processes are
// written so.
class FieldWriter {
public:
    void number(std::uint64_t value, int width)
    {
        for (int i = width - 1; i >= 0; --i)
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    // Writes the length in four bytes, then the bytes themselves.
    template <class Bytes>
    void field(const Bytes& contents)
    {
        number(contents.size(), 4);
        bytes.insert(bytes.end(), contents.begin(), contents.end());
    }

    Data bytes;
};

// Reads fields from the front. Once bytes are missing, every further read gives 0 or nothing and isDamaged() is true.
// The bytes must outlive the reader.
class FieldReader {
public:
    FieldReader(const Data& bytes, std::size_t position, std::size_t end)
        : bytes_(bytes),
          position_(position),
          end_(end)
    {
    }
    explicit FieldReader(const Data& bytes) : FieldReader(bytes, 0, bytes.size()) { }

    bool isDamaged() const { return isDamaged_; }
    bool isAtEnd() const { return position_ == end_; }

    std::uint64_t number(std::size_t width)
    {
        std::uint64_t value = 0;
        for (const std::uint8_t byte : field<Data>(width))
            value = (value << 8U) | byte;
        return value;
    }
    template <class Bytes>
    Bytes field()
    {
        return field<Bytes>(static_cast<std::size_t>(number(4)));
    }

private:
    template <class Bytes>
    Bytes field(std::size_t length)
    {
        if (isDamaged_ || length > end_ - position_) {
            isDamaged_ = true;
            return {};
        }
        const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(position_);
        position_ += length;
        return Bytes(first, first + static_cast<std::ptrdiff_t>(length));
    }

    const Data& bytes_;
    std::size_t position_;
    std::size_t end_;
    bool isDamaged_ = false;
};

} // namespace quillbox
