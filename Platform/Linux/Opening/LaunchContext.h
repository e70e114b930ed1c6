#pragma once

#include "GLibPointer.h"

#include <gio/gio.h>

#include <string>

namespace quillbox {

// The context of one start: hands the activation token of the click that asked for it to the program, in its
// environment and, where it is activated over the bus, with the message. An empty token hands over nothing. Sets
// `isTaken`, which outlives the start, where the program is one that tells the desktop when it has started.
GLibObject<GAppLaunchContext> makeLaunchContext(const std::string& activationToken, bool& isTaken);

} // namespace quillbox
