#pragma once

#include <string>
#include <string_view>

namespace quillbox {

// Returns a key by which names sort as people read them: with Unicode case folding and canonical equivalence, and with
// runs of the digits 0-9 by their value at any length (leading zeros don't count). The locale has no influence. A key
// is computed once for each name; keys compare by their bytes (std::string's own order, or memcmp with the shorter one
// first). Bytes that are not UTF-8 count as U+FFFD.
std::string nameSortKey(std::string_view name);

// Appends the key of `name` to `keys`, for callers that keep the keys of a whole directory in one buffer.
void appendNameSortKey(std::string_view name, std::string& keys);

// Whether two texts are canonically equivalent: the same characters, however composed. Case counts.
bool isCanonicallyEqual(std::string_view a, std::string_view b);

} // namespace quillbox
