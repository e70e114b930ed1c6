#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillbox::unicode {

bool isValidUTF8(std::string_view bytes);

// The text that stands for bytes of any kind: valid UTF-8 unchanged, every maximal run that is not valid
// replaced by U+FFFD. NUL bytes stay.
std::string displayText(std::string_view bytes);

// Decodes the code point at `position` of valid UTF-8 and moves `position` past it.
char32_t nextCodePoint(std::string_view text, std::size_t& position);

// Unicode's White_Space property: what a regular expression's \s matches.
bool isWhitespace(char32_t codePoint);

} // namespace quillbox::unicode
