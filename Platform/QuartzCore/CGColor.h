#pragma once

namespace quillbox {

// A colour by its role; the desktop chooses the real one, so that it follows the theme.
enum class CGColor {
    clear,
    // The colour of text on a window.
    label,
    // The colour that marks errors.
    systemRed,
    // The desktop's accent colour, for what is active.
    controlAccent,
};

} // namespace quillbox
