#pragma once

namespace quillbox {

// GLib connects to the session bus when something of it needs one, and ends the process when that bus goes. To be
// called before anything of GLib that may need the bus (activated programs, volumes, marks of trust): the process then
// outlives a restart of the bus, and the next call connects to the one that came after.
void useSessionBusOfGLib();

} // namespace quillbox
