#pragma once

#include "GLibPointer.h"

#include <gio/gio.h>

#include <string>

namespace quillbox {

// Makes the context of one start. It passes the activation token of the click to the program, in its environment and,
// if the program is activated over the bus, in the message. An empty token passes nothing. `isTaken` must outlive the
// start; it is set if the program will tell the desktop when it is ready.
GLibObject<GAppLaunchContext> makeLaunchContext(const std::string& activationToken, bool& isTaken);

} // namespace quillbox
