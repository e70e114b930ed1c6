#pragma once

#include "PropertyList.h"
#include "Result.h"

#include <string>
#include <string_view>

// The XML form of property lists. PropertyList reads it; whoever shows lists to people writes it.
namespace quillbox::xmlpropertylist {

// `text` is UTF-8 without a byte order mark. Anything but one whole property list is an error: other elements, text
// between the values, values that are no numbers, dates or Base64, and texts that XML can't hold.
Result<PropertyList> read(std::string_view text);

// The whole text, UTF-8 with one element a line. Fails on text that is not valid UTF-8 or has what XML can't hold.
Result<std::string> write(const PropertyList& list);

} // namespace quillbox::xmlpropertylist
