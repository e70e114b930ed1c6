#pragma once

#include "Data.h"
#include "PropertyList.h"
#include "Result.h"

// The binary form of property lists, both ways. Called by PropertyList only.
//
// Written here and not taken from a library: libplist 2.2 hands dates out as whole seconds in 32 bits, has no call
// that makes or tells an unsigned number of 2^63 and more, ends texts at a NUL, and on hostile bytes recurses until
// the stack ends or copies shared values without bound.
//
// The form: "bplist00", the objects, a table of their offsets, and a trailer of 32 bytes that says how wide
// offsets and object references are, how many objects there are, which is the root and where the table is.
// All numbers are big-endian. An object begins with a byte whose high half is the type and whose low half is
// the size (a power of two for numbers, a count for the rest, 15 where the count follows as an integer).
namespace quillbox::binarypropertylist {

bool hasMagic(const Data& bytes);
Result<PropertyList> read(const Data& bytes);
// Fails on text that is not valid UTF-8 and on what read() would refuse for its depth or size.
Result<Data> write(const PropertyList& root);

} // namespace quillbox::binarypropertylist
