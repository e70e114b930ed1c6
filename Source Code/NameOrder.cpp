#include "NameOrder.h"

#include "StringComparison.h"
#include "Unicode.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace quillbox {

namespace {

    constexpr std::array<std::string_view, 3> kArticles { "a", "an", "the" };
    constexpr std::array<std::string_view, 4> kOpeningQuotes { "'", "\"", "\u2018", "\u201C" };
    constexpr std::size_t kTypicalKeyLength = 24;

    std::size_t skipWhitespace(std::string_view text, std::size_t position)
    {
        while (position < text.size()) {
            std::size_t next = position;
            if (!unicode::isWhitespace(unicode::nextCodePoint(text, next)))
                break;
            position = next;
        }
        return position;
    }

    // Returns the position after `word` and the white space behind it. It is 0 if the text does not begin with the
    // word, if nothing follows, or if the white space is needed and missing.
    std::size_t afterLeading(std::string_view text, std::string_view word, bool needsSpace)
    {
        if (!text.starts_with(word))
            return 0;
        const std::size_t position = skipWhitespace(text, word.size());
        const bool hasSpace = position > word.size();
        return position < text.size() && (hasSpace || !needsSpace) ? position : 0;
    }

    bool startsWithArticleLetter(std::string_view title)
    {
        return !title.empty() && (title[0] == 'a' || title[0] == 'A' || title[0] == 't' || title[0] == 'T');
    }

    // Returns eight bytes of a key from `depth` on, as a number that compares as they do. Zeros stand in after the
    // key's end.
    std::uint64_t eightBytes(std::string_view key, std::size_t depth)
    {
        std::uint64_t bytes = 0;
        if (depth < key.size())
            std::memcpy(&bytes, key.data() + depth, std::min(key.size() - depth, sizeof bytes));
        return std::endian::native == std::endian::little ? __builtin_bswap64(bytes) : bytes;
    }

} // namespace

std::string_view titleWithoutArticle(std::string_view title)
{
    if (startsWithArticleLetter(title)) {
        // The longest article has three letters, and changing their case changes no length.
        std::array<char, 3> head {};
        const std::size_t headLength = std::min(title.size(), head.size());
        for (std::size_t index = 0; index < headLength; ++index)
            head[index] =
                title[index] >= 'A' && title[index] <= 'Z' ? static_cast<char>(title[index] + 32) : title[index];
        for (const std::string_view article : kArticles) {
            if (!std::string_view(head.data(), headLength).starts_with(article))
                continue;
            if (const std::size_t rest = afterLeading(title, title.substr(0, article.size()), true)) {
                title.remove_prefix(rest);
                break;
            }
        }
    }
    for (const std::string_view quote : kOpeningQuotes) {
        if (const std::size_t rest = afterLeading(title, quote, false)) {
            title.remove_prefix(rest);
            break;
        }
    }
    return title;
}

NameOrder::NameOrder(std::size_t expectedCount)
{
    entries_.reserve(expectedCount);
    keys_.reserve(expectedCount * kTypicalKeyLength);
}

void NameOrder::add(std::string_view name)
{
    const std::size_t offset = keys_.size();
    appendNameSortKey(name, keys_);
    const std::string_view key = std::string_view(keys_).substr(offset);
    entries_.push_back({ eightBytes(key, 0), static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(key.size()),
                         static_cast<std::uint32_t>(entries_.size()) });
}

void NameOrder::sortFrom(std::size_t depth, EntryIterator begin, EntryIterator end)
{
    // Positions and lengths are compared only when all bytes of the keys are equal; comparing positions makes the sort
    // stable.
    const bool isExhausted = std::all_of(begin, end, [depth](const Entry& entry) { return entry.length <= depth; });
    if (isExhausted) {
        std::sort(begin, end, [](const Entry& a, const Entry& b) {
            return a.length != b.length ? a.length < b.length : a.position < b.position;
        });
        return;
    }
    std::sort(begin, end, [](const Entry& a, const Entry& b) { return a.bytes < b.bytes; });
    while (begin != end) {
        const auto next = std::find_if(begin, end, [begin](const Entry& entry) { return entry.bytes != begin->bytes; });
        if (next - begin > 1) {
            const std::size_t deeper = depth + sizeof begin->bytes;
            for (auto entry = begin; entry != next; ++entry)
                entry->bytes = eightBytes(std::string_view(keys_).substr(entry->offset, entry->length), deeper);
            sortFrom(deeper, begin, next);
        }
        begin = next;
    }
}

std::vector<std::uint32_t> NameOrder::sortedPositions()
{
    sortFrom(0, entries_.begin(), entries_.end());
    std::vector<std::uint32_t> positions;
    positions.reserve(entries_.size());
    for (const Entry& entry : entries_)
        positions.push_back(entry.position);
    return positions;
}

} // namespace quillbox
