#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <cstddef>

namespace quillbox {

// The kinds of hosts that draw the menu and need other answers than the protocol says. Everything that only one host
// needs is decided here; all other code treats hosts alike.
enum class MenuHostKind {
    standard,
    // GNOME Shell with its AppIndicator extension. It opens no empty submenu. It decides whether a level can be
    // scrolled before the level has its rows. Whenever a layout contains `children-display`, it replaces the row and
    // closes the row's open submenu. A row that it knows stays where it is, even if a layout has it in another place.
    // From a label it removes only the first mark of a mnemonic.
    gnomeShell,
    // Plasma's panel on Wayland. It gives a submenu its place before it asks for the rows, and leaves the submenu there
    // when they come.
    plasma,
};

// Recognises hosts. GNOME Shell is recognised by what it asks: the property names in a GetLayout call tell what its
// caller is; other calls of the host come from the same connection. Plasma's panel asks like others, and is the host of
// its session.
class MenuHosts {
public:
    // `desktops` is the value of XDG_CURRENT_DESKTOP, a colon-separated list.
    explicit MenuHosts(const QString& desktops);

    // The connections of hosts that unfold levels in one column.
    const QSet<QString>& withOneColumn() const { return gnomeShells_; }

    // `connection` is the unique name of the caller.
    MenuHostKind askedForLayout(const QString& connection, const QStringList& propertyNames);
    MenuHostKind kind(const QString& connection) const;

private:
    MenuHostKind usual_;
    QSet<QString> gnomeShells_;
};

// Whether layouts leave out `children-display`, so that it is sent only once, with the properties of rows.
bool leavesChildrenDisplayToProperties(MenuHostKind host);

// Whether a level that has not been listed yet must still have a row.
bool needsPlaceholders(MenuHostKind host);

// Returns the label of the row in a level that has not been listed. It makes the row as tall as any screen, so that the
// level can be scrolled from the start.
QString placeholderLabel();

// The id of a placeholder is that of the row above it, moved to a range that the ids of rows never reach, so none has
// to be stored. Placeholder ids are positive because the shell takes a negative id for an unknown row.
inline constexpr int kFirstPlaceholder = 1 << 30;
inline int placeholderId(int level)
{
    return kFirstPlaceholder + level;
}
inline bool isPlaceholder(int id)
{
    return id >= kFirstPlaceholder;
}
inline int levelOfPlaceholder(int id)
{
    return id - kFirstPlaceholder;
}

// Whether a host that gets both a signal to read a level again and an answer that says the same would ask for the
// layout twice, and never ask for the properties of the rows that only the first layout contained.
bool losesOneOfTwoLayouts(MenuHostKind host);

// Whether a row that is in another place in a layout than in the one before stays where it was on the screen.
bool leavesRowsInTheirPlaces(MenuHostKind host);

// Whether a submenu that is still empty when it opens is shown in a wrong place, even off the screen. Such a host gets
// a new row in place of the one under the pointer, whose level has its rows before it opens.
bool placesEmptyLevels(MenuHostKind host);

// Whether each click starts a busy pointer, which stays until a program has started or the host is told that none will.
bool showsBusyPointer(MenuHostKind host);

// Whether the levels unfold in one column, so that a deep level only has room if the rows beside the way to it are
// hidden.
bool showsOneColumn(MenuHostKind host);
std::size_t roomForRowsInOneColumn();

// Returns the label that the host shows as `title`: hosts take an underscore as the mark of a mnemonic.
QString escapedLabel(QString title, MenuHostKind host);

} // namespace quillbox
