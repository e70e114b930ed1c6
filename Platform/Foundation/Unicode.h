#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillbox::unicode {

bool isValidUTF8(std::string_view bytes);

// Returns text that can be shown for bytes of any kind: valid UTF-8 stays, and every maximal run of invalid bytes
// becomes one U+FFFD. NUL bytes stay.
std::string displayText(std::string_view bytes);

// Decodes the code point at `position` of valid UTF-8 and moves `position` past it.
char32_t nextCodePoint(std::string_view text, std::size_t& position);

// Whether the code point has Unicode's White_Space property, which is what \s matches in a regular expression.
bool isWhitespace(char32_t codePoint);

} // namespace quillbox::unicode
