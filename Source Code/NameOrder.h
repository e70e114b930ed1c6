#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// Returns the part of a title that counts when articles are ignored: the title without one leading "a", "an" or "the"
// (in any case) and the space after it, and then without one opening quote. Nothing is taken away if that would leave
// the title empty.
std::string_view titleWithoutArticle(std::string_view title);

// Sorts names in the order in which people look for them (see StringComparison.h); equal names keep their order. The
// key of a name is made when it is added, and all keys share one buffer.
class NameOrder {
public:
    explicit NameOrder(std::size_t expectedCount);

    void add(std::string_view name);
    // Returns the positions of the names in sorted order; 0 is the first name that was added.
    std::vector<std::uint32_t> sortedPositions();

private:
    struct Entry {
        // The eight bytes of the key at which the sort is looking, as a number.
        std::uint64_t bytes;
        std::uint32_t offset;
        std::uint32_t length;
        std::uint32_t position;
    };

    using EntryIterator = std::vector<Entry>::iterator;

    // Sorts entries whose keys are equal up to `depth`, and whose `bytes` are the eight that follow.
    void sortFrom(std::size_t depth, EntryIterator begin, EntryIterator end);

    std::string keys_;
    std::vector<Entry> entries_;
};

} // namespace quillbox
