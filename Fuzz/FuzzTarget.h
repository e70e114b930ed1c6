#pragma once

#include "Data.h"
#include "TemporaryDirectory.h"

#include <string>
#include <string_view>

namespace quillbox {

// One place where the program takes bytes from outside. A target is a function that gets any bytes, passes them to the
// program's code, and stops the process (QB_CHECK) if that code breaks a promise. The argument --target=<name> selects
// the target of a process; the corpora are in directories of the same names.
class FuzzTarget {
public:
    using Function = void (*)(const Data&);
    FuzzTarget(const char* name, Function function);
};

std::string textOf(const Data& bytes);

// Makes what the display's side needs: the toolkit's application without a display, and a desktop that shows nothing.
// Further calls do nothing.
void startDisplay();

// A directory that exists as long as the process.
const TemporaryDirectory& scratchDirectory();

} // namespace quillbox
