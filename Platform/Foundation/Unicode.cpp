#include "Unicode.h"

#include <cstring>
#include <utf8proc.h>

namespace quillbox::unicode {

namespace {

    constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

    bool isContinuation(char c)
    {
        return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    }

    // Returns where the run of plain ASCII that begins at `position` ends.
    std::size_t endOfASCII(std::string_view bytes, std::size_t position)
    {
        while (position + 8 <= bytes.size()) {
            std::uint64_t eight = 0;
            std::memcpy(&eight, bytes.data() + position, 8);
            if ((eight & 0x8080808080808080U) != 0)
                break;
            position += 8;
        }
        while (position < bytes.size() && static_cast<unsigned char>(bytes[position]) < 0x80)
            ++position;
        return position;
    }

    // Returns how many bytes the well-formed sequence at `position` has, or 0 if there is none. Overlong forms,
    // surrogates and what lies past U+10FFFF are not well-formed.
    std::size_t sequenceLength(std::string_view bytes, std::size_t position)
    {
        const auto lead = static_cast<unsigned char>(bytes[position]);
        if (lead < 0x80)
            return 1;
        const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        if (lead < 0xC2 || lead > 0xF4 || position + length > bytes.size())
            return 0;
        for (std::size_t i = 1; i < length; ++i) {
            if (!isContinuation(bytes[position + i]))
                return 0;
        }
        const auto second = static_cast<unsigned char>(bytes[position + 1]);
        const bool isMalformed = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F)
            || (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
        return isMalformed ? 0 : length;
    }

    // Returns where the well-formed text that begins at `position` ends.
    std::size_t endOfValid(std::string_view bytes, std::size_t position)
    {
        while (true) {
            position = endOfASCII(bytes, position);
            if (position == bytes.size())
                return position;
            const std::size_t length = sequenceLength(bytes, position);
            if (length == 0)
                return position;
            position += length;
        }
    }

} // namespace

bool isValidUTF8(std::string_view bytes)
{
    return endOfValid(bytes, 0) == bytes.size();
}

std::string displayText(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    std::size_t position = 0;
    while (position < bytes.size()) {
        const std::size_t end = endOfValid(bytes, position);
        text.append(bytes, position, end - position);
        position = end;
        if (position == bytes.size())
            break;
        text += kReplacement;
        while (position < bytes.size() && sequenceLength(bytes, position) == 0)
            ++position;
    }
    return text;
}

char32_t nextCodePoint(std::string_view text, std::size_t& position)
{
    const auto lead = static_cast<unsigned char>(text[position++]);
    if (lead < 0x80)
        return lead;
    const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    char32_t codePoint = lead & (0x3FU >> following);
    for (int i = 0; i < following && position < text.size(); ++i)
        codePoint = (codePoint << 6) | (static_cast<unsigned char>(text[position++]) & 0x3FU);
    return codePoint;
}

bool isWhitespace(char32_t c)
{
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680
        || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

} // namespace quillbox::unicode
