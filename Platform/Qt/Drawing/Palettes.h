#pragma once

#include <QPalette>
#include <QString>
#include <QStringList>

#include <optional>

namespace quillbox {

// Palettes for desktops whose colours the toolkit does not know or stops following. The functions have no side effects;
// plasmaPalette() and iconThemeFor() read files.

// What the desktop asks for, as far as it does.
struct ColourWish {
    std::optional<bool> isDark;
    bool isHighContrast = false;
    friend bool operator==(const ColourWish&, const ColourWish&) = default;
};

// Whether the palette's windows are darker than the text on them.
bool isDark(const QPalette& palette);
// Returns the contrast ratio of two colours as the Web Content Accessibility Guidelines define it, from 1 to 21.
// Transparency is ignored.
double contrast(const QColor& one, const QColor& other);

// Returns the palette to set if `given` is not as wished; nothing if it is.
std::optional<QPalette> paletteFor(ColourWish wish, const QPalette& given);

// Returns what the name of a GTK theme says about its colours.
ColourWish wishOfGtkTheme(const QString& name);

// Returns the colours in a settings file of Plasma (kdeglobals). Nothing is returned if the file names none; the
// desktop's default colours apply then.
std::optional<QPalette> plasmaPalette(const QString& file);
// Whether the palettes are the same in what users see: windows, lists, buttons and selected items.
bool looksLike(const QPalette& one, const QPalette& other);

// Returns the icon theme related to `theme` whose symbols can be read on dark (or light) windows: such themes come in
// pairs, for example "breeze" and "breeze-dark". It is `theme` itself if there is no such related theme in
// `directories`.
QString iconThemeFor(const QString& theme, bool isDark, const QStringList& directories);

} // namespace quillbox
