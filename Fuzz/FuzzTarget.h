#pragma once

#include "Data.h"
#include "TemporaryDirectory.h"

#include <string>
#include <string_view>

namespace quillbox {

// One thing that takes bytes from outside. A target is a function that is given any bytes at all: it hands them to the
// program's code and stops the process (QB_CHECK) where a promise of that code is broken. Which target a process runs
// is told by its argument --target=<name>; the corpora lie in directories of the same names.
class FuzzTarget {
public:
    using Function = void (*)(const Data&);
    FuzzTarget(const char* name, Function function);
};

// The bytes as text.
std::string textOf(const Data& bytes);

// Makes what the display's side needs around it: an application of the toolkit without a display, a desktop that shows
// nothing. Once a process.
void startDisplay();

// A directory that lasts as long as the process.
const TemporaryDirectory& scratchDirectory();

} // namespace quillbox
