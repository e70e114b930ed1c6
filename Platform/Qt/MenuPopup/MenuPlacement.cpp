#include "MenuPlacement.h"

#include <algorithm>

namespace quillbox {

namespace {

    // Moves `position` into [low, high - length]. If there is not enough room, the beginning stays visible.
    int fitted(int position, int length, int low, int high)
    {
        return std::max(low, std::min(position, high - length));
    }

} // namespace

QRect placeBesideAnchor(QSize menu, QRect anchor, QRect available, Qt::LayoutDirection direction)
{
    const int availableBottom = available.y() + available.height();
    const int availableRight = available.x() + available.width();
    // An icon in a panel is outside the available part.
    const int below = std::clamp(anchor.y() + anchor.height(), available.y(), availableBottom);
    const int above = std::clamp(anchor.y(), available.y(), availableBottom);
    const int roomBelow = availableBottom - below;
    const int roomAbove = above - available.y();

    const int width = std::min(menu.width(), available.width());
    int height = menu.height();
    int y = below;
    if (height > roomBelow) {
        const bool goesAbove = height <= roomAbove || roomAbove > roomBelow;
        height = std::min(height, goesAbove ? roomAbove : roomBelow);
        y = goesAbove ? above - height : below;
    }
    const int x = direction == Qt::RightToLeft ? anchor.x() + anchor.width() - width : anchor.x();
    return { fitted(x, width, available.x(), availableRight), y, width, height };
}

QRect placeBesideRow(QSize menu, int firstRowTop, QRect row, QRect parent, QRect available, int overlap,
                     Qt::LayoutDirection direction)
{
    const int availableRight = available.x() + available.width();
    const int onTheRight = parent.x() + parent.width() - overlap;
    const int width = std::min(menu.width(), available.width());
    const int onTheLeft = parent.x() + overlap - width;
    const bool fitsRight = onTheRight + width <= availableRight;
    const bool fitsLeft = onTheLeft >= available.x();

    bool goesRight = direction != Qt::RightToLeft;
    if (goesRight ? !fitsRight : !fitsLeft) {
        if (fitsRight != fitsLeft)
            goesRight = fitsRight;
        else
            goesRight = availableRight - onTheRight >= parent.x() + overlap - available.x();
    }
    const int height = std::min(menu.height(), available.height());
    return { fitted(goesRight ? onTheRight : onTheLeft, width, available.x(), availableRight),
             fitted(row.y() - firstRowTop, height, available.y(), available.y() + available.height()), width, height };
}

} // namespace quillbox
