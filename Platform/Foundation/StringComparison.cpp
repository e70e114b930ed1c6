#include "StringComparison.h"

#include "Unicode.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utf8proc.h>
#include <vector>

namespace quillbox {

namespace {

    using CodePoints = std::vector<utf8proc_int32_t>;

    // The key byte of each ASCII character is the character in lower case. Digits are written by appendDigits().
    constexpr std::array<char, 128> kFoldedASCII = [] {
        std::array<char, 128> table {};
        for (std::size_t i = 0; i < table.size(); ++i)
            table[i] = static_cast<char>(i >= 'A' && i <= 'Z' ? i + ('a' - 'A') : i);
        return table;
    }();

    bool isDigit(char c)
    {
        return c >= '0' && c <= '9';
    }

    bool isASCII(std::string_view text)
    {
        return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    }

    // Writes a run of digits as '0', the count of digits after the leading zeros, and those digits, so that byte order
    // is the order of the values. Up to 254 digits are counted in one byte; a longer run has the byte 255 and an
    // eight-byte count. Returns where the run ends.
    std::size_t appendDigits(std::string_view text, std::size_t position, std::string& keys)
    {
        while (position < text.size() && text[position] == '0')
            ++position;
        const std::size_t first = position;
        while (position < text.size() && isDigit(text[position]))
            ++position;
        const std::size_t count = position - first;
        keys += '0';
        if (count < 255) {
            keys += static_cast<char>(count);
        } else {
            keys += static_cast<char>(255);
            for (int shift = 56; shift >= 0; shift -= 8)
                keys += static_cast<char>(count >> shift);
        }
        keys.append(text, first, count);
        return position;
    }

    void decomposeInto(utf8proc_int32_t codePoint, utf8proc_option_t options, CodePoints& result)
    {
        std::array<utf8proc_int32_t, 32> decomposed {};
        int boundaryState = 0;
        const utf8proc_ssize_t count = utf8proc_decompose_char(
            codePoint, decomposed.data(), static_cast<utf8proc_ssize_t>(decomposed.size()), options, &boundaryState);
        if (count <= 0 || count > static_cast<utf8proc_ssize_t>(decomposed.size()))
            result.push_back(codePoint);
        else
            result.insert(result.end(), decomposed.begin(), decomposed.begin() + count);
    }

    // Puts every run of combining marks into canonical order.
    void orderMarks(CodePoints& text)
    {
        const auto combiningClass = [](utf8proc_int32_t c) { return utf8proc_get_property(c)->combining_class; };
        auto start = text.begin();
        while (start != text.end()) {
            if (*start < 0x300 || combiningClass(*start) == 0) {
                ++start;
                continue;
            }
            const auto end = std::find_if(start, text.end(), [&](auto c) { return combiningClass(c) == 0; });
            std::stable_sort(start, end, [&](auto a, auto b) { return combiningClass(a) < combiningClass(b); });
            start = end;
        }
    }

    // Returns valid UTF-8 as code points in canonical decomposition.
    CodePoints decomposed(std::string_view text)
    {
        CodePoints result;
        result.reserve(text.size());
        std::size_t position = 0;
        while (position < text.size())
            decomposeInto(static_cast<utf8proc_int32_t>(unicode::nextCodePoint(text, position)), UTF8PROC_DECOMPOSE,
                          result);
        orderMarks(result);
        return result;
    }

    std::string folded(std::string_view text)
    {
        // The text is decomposed before folding too: folding can turn a mark into a letter, and other marks must not be
        // ordered across it.
        CodePoints folded;
        for (utf8proc_int32_t codePoint : decomposed(text))
            decomposeInto(codePoint, static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD), folded);
        orderMarks(folded);

        std::string result;
        result.reserve(text.size() * 2);
        for (utf8proc_int32_t codePoint : folded) {
            std::uint8_t encoded[4];
            result.append(reinterpret_cast<const char*>(encoded),
                          static_cast<std::size_t>(utf8proc_encode_char(codePoint, encoded)));
        }
        return result;
    }

    // Writes the key of the ASCII text at the beginning. Returns where that text ends.
    std::size_t appendASCIIKey(std::string_view text, std::string& keys)
    {
        std::size_t position = 0;
        while (position < text.size()) {
            const auto byte = static_cast<unsigned char>(text[position]);
            if (byte >= 0x80)
                break;
            if (isDigit(text[position])) {
                position = appendDigits(text, position, keys);
            } else {
                keys += kFoldedASCII[byte];
                ++position;
            }
        }
        return position;
    }

    void appendFoldedKey(std::string_view folded, std::string& keys)
    {
        std::size_t position = 0;
        while (position < folded.size()) {
            if (isDigit(folded[position]))
                position = appendDigits(folded, position, keys);
            else
                keys += folded[position++];
        }
    }

} // namespace

void appendNameSortKey(std::string_view name, std::string& keys)
{
    const std::size_t before = keys.size();
    if (appendASCIIKey(name, keys) == name.size())
        return;
    keys.resize(before);
    appendFoldedKey(unicode::isValidUTF8(name) ? folded(name) : folded(unicode::displayText(name)), keys);
}

std::string nameSortKey(std::string_view name)
{
    std::string key;
    key.reserve(name.size() + 4);
    appendNameSortKey(name, key);
    return key;
}

bool isCanonicallyEqual(std::string_view a, std::string_view b)
{
    if (a == b)
        return true;
    if (isASCII(a) && isASCII(b))
        return false;
    if (!unicode::isValidUTF8(a) || !unicode::isValidUTF8(b))
        return false;
    return decomposed(a) == decomposed(b);
}

} // namespace quillbox
