#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <cstddef>

namespace quillbox {

// A host that draws the menu and needs to be answered in another way than the protocol says. Whatever only one host
// needs is decided here and nowhere else; everything else treats all of them alike.
enum class MenuHostKind {
    standard,
    // GNOME's shell with its AppIndicator extension. It opens no submenu that is empty, it decides whether a level can
    // be scrolled before the level has its rows, it replaces a row, and closes the row's open submenu, whenever a
    // layout brings `children-display`, and it takes only the first mark of a mnemonic out of a label.
    gnomeShell,
};

// Tells hosts apart by what they ask: the caller of a GetLayout is what its list of property names says it is, and its
// other calls come from the same connection.
class MenuHosts {
public:
    // The connections of the hosts that unfold levels in one column.
    const QSet<QString>& withOneColumn() const { return gnomeShells_; }

    // `connection` is the unique name of the caller.
    MenuHostKind askedForLayout(const QString& connection, const QStringList& propertyNames);
    MenuHostKind kind(const QString& connection) const;

private:
    QSet<QString> gnomeShells_;
};

// Whether layouts leave out `children-display`, so that only the properties of rows bring it, once.
bool leavesChildrenDisplayToProperties(MenuHostKind host);

// Whether a level that was not listed yet has to have a row all the same.
bool needsPlaceholders(MenuHostKind host);

// The row that stands in an unlisted level: one as tall as any screen, so that the level can be scrolled from the
// start.
QString placeholderLabel();

// The ids of placeholders are those of their levels' rows in another range, which the ids of rows never reach: none of
// them has to be kept. They are positive because the shell takes a negative one for a row that it does not know.
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

// Whether the answer that a level is to be read again must not follow the signal that says the same: the host would ask
// for the layout twice, and never for the properties of the rows that only the first answer brought.
bool losesOneOfTwoLayouts(MenuHostKind host);

// Whether a pointer that says that something is being started comes with each click, and stays until something was or
// the host is told that nothing will be.
bool showsBusyPointer(MenuHostKind host);

// Whether the levels unfold in one column: a deep one has room there only where what lies beside the way to it is
// hidden.
bool showsOneColumn(MenuHostKind host);
std::size_t roomForRowsInOneColumn();

// The label that the host shows as `title`: hosts take an underscore as the mark of a mnemonic.
QString escapedLabel(QString title, MenuHostKind host);

} // namespace quillbox
