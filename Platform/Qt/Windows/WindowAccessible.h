#pragma once

namespace quillbox {

// Tells assistive technologies what the windows' own widgets are: windows and sheets, labels, pictures, tables and
// their rows. The toolkit's controls tell it themselves. Makes nothing until something asks.
void installWindowAccessibility();

} // namespace quillbox
