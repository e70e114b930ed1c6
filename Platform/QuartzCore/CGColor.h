#pragma once

namespace quillbox {

// A colour by its role; the desktop turns it into a real one, so that it follows the theme.
enum class CGColor {
    clear,
    // Text on the colour of the window.
    label,
    // What is wrong.
    systemRed,
    // The desktop's colour for what is active.
    controlAccent,
};

} // namespace quillbox
