#pragma once

#include <QPalette>
#include <QString>
#include <QStringList>

#include <optional>

namespace quillbox {

// Palettes for desktops whose colours the toolkit does not know, or stops following. Pure, but for the files that are
// named.

// What the desktop wants of colours, as far as it says so.
struct ColourWish {
    std::optional<bool> isDark;
    bool isHighContrast = false;
    friend bool operator==(const ColourWish&, const ColourWish&) = default;
};

// Whether the palette's windows are darker than the text on them.
bool isDark(const QPalette& palette);
// From 1 to 21, as the guidelines for readable contents of the web measure it. Transparency is not looked at.
double contrast(const QColor& one, const QColor& other);

// The palette to set where `given` is not as wished; none where it is.
std::optional<QPalette> paletteFor(ColourWish wish, const QPalette& given);

// What the name of a GTK theme says of its colours.
ColourWish wishOfGtkTheme(const QString& name);

// The colours in a settings file of Plasma (kdeglobals); none where it names none, since the desktop's own then hold.
std::optional<QPalette> plasmaPalette(const QString& file);
// Whether they are the same where a person sees it: in windows, lists, buttons and what is selected.
bool looksLike(const QPalette& one, const QPalette& other);

// The icon theme beside `theme` whose symbols can be read on dark, or on light, windows: themes of symbols come in
// pairs such as "breeze" and "breeze-dark". `theme` itself where it has no such sibling in `directories`.
QString iconThemeFor(const QString& theme, bool isDark, const QStringList& directories);

} // namespace quillbox
