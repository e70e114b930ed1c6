#pragma once

namespace quillbox {

// Describes the windows' own widgets to assistive technologies: windows and sheets, labels, pictures, tables and their
// rows. The toolkit's controls describe themselves. Nothing is made until something asks.
void installWindowAccessibility();

} // namespace quillbox
