#pragma once

#include "PropertyList.h"
#include "Result.h"

#include <string>

// Property lists as JSON, where both can say the same: dictionaries, arrays, texts, numbers and booleans.
namespace quillbox::jsontext {

// Dates become texts as ISO 8601 has them, in UTC; bytes become Base64.
std::string write(const PropertyList& list);

// One object or array. Whole numbers are integers; a text of the form of a date stays a text.
Result<PropertyList> read(const std::string& text);

} // namespace quillbox::jsontext
