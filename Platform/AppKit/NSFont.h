#pragma once

#include "AttributedString.h"

namespace quillbox::NSFont {

// `size` is in points; 0 is the default size.
constexpr FontAttribute boldSystemFont(double size)
{
    return { FontAttribute::Role::system, FontAttribute::Weight::bold, size };
}
constexpr FontAttribute systemFont(double size, FontAttribute::Weight weight = FontAttribute::Weight::regular)
{
    return { FontAttribute::Role::system, weight, size };
}
constexpr FontAttribute userFont(double size)
{
    return { FontAttribute::Role::user, FontAttribute::Weight::regular, size };
}
// The default size of the user font, in points, on the running desktop.
double userFontSize();
// Stands for the desktop's small system size until the desktop turns the font into a real one.
inline constexpr double smallSystemFontSize = FontAttribute::kSmallSize;

} // namespace quillbox::NSFont
