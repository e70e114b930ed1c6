#pragma once

#include "PropertyList.h"
#include "Result.h"

#include <string_view>

// The XML form of property lists: read, never written. Called by PropertyList only.
namespace quillbox::xmlpropertylist {

// `text` is UTF-8 without a byte order mark. Anything that is not one whole property list is an error: other
// elements, text between the values, values that are no numbers, dates or Base64, texts that XML can't hold.
Result<PropertyList> read(std::string_view text);

} // namespace quillbox::xmlpropertylist
