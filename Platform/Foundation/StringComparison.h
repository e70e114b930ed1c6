#pragma once

#include <string>
#include <string_view>

namespace quillbox {

// The order in which people read names: Unicode case folding, canonical equivalence, runs of the digits
// 0-9 by their value at any length (leading zeros equal), no locale. A key is computed once per name; keys
// compare by their bytes (std::string's own order, or memcmp with the shorter one first). Bytes that are
// not UTF-8 count as U+FFFD.
std::string nameSortKey(std::string_view name);

// Appends the key of `name` to `keys`, for callers that keep the keys of a whole directory in one buffer.
void appendNameSortKey(std::string_view name, std::string& keys);

// Whether two texts are the same characters, however composed: canonical equivalence with case kept.
bool isCanonicallyEqual(std::string_view a, std::string_view b);

} // namespace quillbox
