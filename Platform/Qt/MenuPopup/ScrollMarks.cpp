#include "ScrollMarks.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionMenuItem>
#include <QWidget>

#include <algorithm>

namespace quillbox {

namespace {

    // The measures of the mark at the side, in logical pixels.
    constexpr int kMarkWidth = 3;
    constexpr int kShortestMark = 12;
    // The mark's colour is a mixture of the text's and the background's; this is the share of the text's.
    constexpr double kMarkShare = 0.4;

    void paintScroller(QPainter& painter, const QWidget& popup, const QRect& rect, QStyle::State arrow)
    {
        QStyleOptionMenuItem scroller;
        scroller.initFrom(&popup);
        scroller.menuItemType = QStyleOptionMenuItem::Scroller;
        scroller.menuRect = popup.rect();
        scroller.rect = rect;
        scroller.state = arrow | QStyle::State_Enabled;
        popup.style()->drawControl(QStyle::CE_MenuScroller, &scroller, &painter, &popup);
    }

    void paintPositionMark(QPainter& painter, const QWidget& popup, const QRect& rows, const MenuLayout::Extent& extent)
    {
        const int length = std::max(kShortestMark, static_cast<int>((extent.end - extent.begin) * rows.height()));
        // The fraction of the scrollable distance that has been scrolled.
        const double hidden = 1 - (extent.end - extent.begin);
        const double progress = hidden > 0 ? extent.begin / hidden : 0;
        const int top = rows.top() + static_cast<int>(progress * (rows.height() - length));
        const QRect mark(rows.right() - kMarkWidth - 1, top, kMarkWidth, length);

        // Transparency and smooth edges are avoided, because the toolkit would paint them with threads that it keeps
        // for a while.
        const QColor text = popup.palette().color(QPalette::Text);
        const QColor base = popup.palette().color(QPalette::Base);
        const auto mixed = [](int one, int other) {
            return static_cast<int>(one * kMarkShare + other * (1 - kMarkShare));
        };
        painter.fillRect(
            QStyle::visualRect(popup.layoutDirection(), rows, mark),
            QColor(mixed(text.red(), base.red()), mixed(text.green(), base.green()), mixed(text.blue(), base.blue())));
    }

} // namespace

void paintScrollMarks(QPainter& painter, const QWidget& popup, const QRect& rows, int scrollerHeight,
                      const MenuLayout& layout)
{
    const QSize size(rows.width(), scrollerHeight);
    if (layout.canScrollUp())
        paintScroller(painter, popup, { QPoint(rows.left(), rows.top() - scrollerHeight), size }, QStyle::State_None);
    if (layout.canScrollDown())
        paintScroller(painter, popup, { QPoint(rows.left(), rows.top() + rows.height()), size },
                      QStyle::State_DownArrow);
    paintPositionMark(painter, popup, rows, layout.extent());
}

} // namespace quillbox
