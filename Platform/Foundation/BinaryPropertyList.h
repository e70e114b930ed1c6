#pragma once

#include "Data.h"
#include "PropertyList.h"
#include "Result.h"

// Reads and writes the binary form of property lists. Only PropertyList calls it.
//
// It is written here and not taken from a library: libplist 2.2 hands dates out as whole seconds in 32 bits, has no
// call that makes or recognises an unsigned number of 2^63 and more, ends texts at a NUL, and on hostile bytes recurses
// until the stack ends or copies shared values without bound.
namespace quillbox::binarypropertylist {

bool hasMagic(const Data& bytes);
// Fails if the bytes are damaged, or if the list is nested too deeply or too large.
Result<PropertyList> read(const Data& bytes);
// Fails if a text is not valid UTF-8, or if read() would refuse the list for its depth or size.
Result<Data> write(const PropertyList& root);

} // namespace quillbox::binarypropertylist
