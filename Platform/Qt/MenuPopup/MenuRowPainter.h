#pragma once

#include "NSMenuItem.h"

#include <QFont>
#include <QRect>
#include <QSize>
#include <QStyleOptionMenuItem>

#include <optional>

class QPainter;
class QWidget;

namespace quillbox {

// Draws one row of a menu as the desktop's style draws menus, and tells how much room the row needs. A MenuPopup owns
// one. It reads the style, font and palette of that widget when it is made, so it has to be replaced when they change.
// It keeps nothing of the rows.
class MenuRowPainter {
public:
    // The side of the icons in rows, in points. Every row has room for an icon, whether it shows one or not.
    static constexpr int kIconSide = 16;

    explicit MenuRowPainter(const QWidget& popup);

    // Does not look at the titles or images of ordinary rows.
    int heightOf(const NSMenuItem& item) const;
    int widthOf(const NSMenuItem& item) const;
    int ordinaryHeight() const { return ordinaryHeight_; }
    // Whether the title is too long for a row of that width.
    bool isElided(const NSMenuItem& item, int rowWidth) const;

    // `mayBeCut` says whether the row may be too narrow for its title; to find out costs as much as drawing the title.
    void paint(QPainter& painter, const QRect& row, const NSMenuItem& item, bool isSelected, bool mayBeCut) const;

private:
    QStyleOptionMenuItem option(const QRect& row) const;
    void paintSeveralLines(QPainter& painter, const QStringList& lines, std::optional<int> room,
                           const QStyleOptionMenuItem& option) const;

    const QWidget* popup_;
    int lineHeight_ = 0;
    int ordinaryHeight_ = 0;
    int separatorHeight_ = 0;
    // The width that the style adds to the text of a row: margins, icon and arrow.
    int widthBesideText_ = 0;
};

} // namespace quillbox
