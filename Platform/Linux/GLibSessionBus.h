#pragma once

namespace quillbox {

// Must be called before any function of GLib that may need the session bus (for activated programs, volumes, marks of
// trust). GLib connects to the bus when it needs it, and by default ends the process when the bus goes away. After this
// call the process outlives a restart of the bus, and the next call connects to the new one.
void useSessionBusOfGLib();

} // namespace quillbox
