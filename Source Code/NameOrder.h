#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// What counts of a title when articles are ignored: the title, in its own case, without one leading "a",
// "an" or "the" and the space behind it, and then without one opening quote. A title that would be left
// empty keeps what it has.
std::string_view titleWithoutArticle(std::string_view title);

// Puts names into the order in which people look for them (see StringComparison.h), equal ones in the
// order they came in. Keys are made when a name is added and lie in one buffer.
class NameOrder {
public:
    explicit NameOrder(std::size_t expectedCount);

    void add(std::string_view name);
    // The positions of the names (0 is the first one added) in sorted order.
    std::vector<std::uint32_t> sortedPositions();

private:
    struct Entry {
        // Eight bytes of the key as a number: those that the sort is looking at.
        std::uint64_t bytes;
        std::uint32_t offset;
        std::uint32_t length;
        std::uint32_t position;
    };

    using EntryIterator = std::vector<Entry>::iterator;

    // Sorts entries whose keys are the same up to `depth` and whose `bytes` are those from there on.
    void sortFrom(std::size_t depth, EntryIterator begin, EntryIterator end);

    std::string keys_;
    std::vector<Entry> entries_;
};

} // namespace quillbox
