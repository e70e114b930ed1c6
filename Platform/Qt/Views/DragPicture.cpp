#include "DragPicture.h"

#include "Appearance.h"
#include "TableViewWidget.h"
#include "ViewKinds.h"

#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace quillbox {

namespace {

    constexpr int kMostRows = 12;
    constexpr double kOpacity = 0.65;
    // The space around the number, in logical pixels.
    constexpr int kNumberMargin = 8;
    constexpr int kNumberInset = 3;

    void paintRow(QPainter& painter, TableViewWidget& widget, NSTableView& table, int row, QPoint at)
    {
        if (QWidget* inSight = widget.rowWidget(row)) {
            inSight->render(&painter, at + QPoint(inSight->x(), 0), QRegion(), QWidget::DrawChildren);
            return;
        }
        // The row is shown only for this picture, on a widget that is never visible.
        QWidget stage;
        stage.setPalette(widget.palette());
        const std::shared_ptr<NSView> view = table.makeRowView(row);
        const auto presenter = makeViewPresenter(view, stage);
        QWidget& shown = *presenter->widget();
        shown.setBackgroundRole(table.selectedRowIndexes().contains(row) ? QPalette::Highlight : QPalette::Base);
        shown.resize(shownRect(view->frame()).size());
        presenter->sync(makeViewPresenter);
        shown.render(&painter, at + QPoint(shownRect(view->frame()).x(), 0), QRegion(), QWidget::DrawChildren);
    }

    // Paints the number of rows in a rounded field at the right end of the first row.
    void paintNumber(QPainter& painter, const QWidget& widget, std::size_t count, QSize row)
    {
        const QString text = QLocale().toString(static_cast<qulonglong>(count));
        const int height = row.height() - 2 * kNumberInset;
        const int width = std::max(height, painter.fontMetrics().horizontalAdvance(text) + 2 * kNumberMargin);
        const QRect field(row.width() - width - kNumberInset, kNumberInset, width, height);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(widget.palette().color(QPalette::HighlightedText));
        painter.setBrush(widget.palette().color(QPalette::Highlight));
        painter.drawRoundedRect(QRectF(field), height / 2.0, height / 2.0);
        painter.drawText(field, Qt::AlignCenter, text);
    }

} // namespace

DragPicture::DragPicture(TableViewWidget& widget, NSTableView& table, int pressedRow)
{
    const auto& rows = table.draggedRows();
    const int shownCount = std::min(static_cast<int>(rows.size()), kMostRows);
    const QSize row(widget.width(), static_cast<int>(table.rowHeight()));
    const auto pressed = static_cast<int>(std::find(rows.begin(), rows.end(), pressedRow) - rows.begin());
    topOfPressedRow_ = std::min(pressed, shownCount - 1) * row.height();

    pixmap_ = QPixmap(QSize(row.width(), shownCount * row.height()) * widget.devicePixelRatioF());
    pixmap_.setDevicePixelRatio(widget.devicePixelRatioF());
    pixmap_.fill(Qt::transparent);
    QPainter painter(&pixmap_);
    painter.setFont(widget.font());
    painter.setOpacity(kOpacity);
    for (int place = 0; place < shownCount; ++place) {
        const int number = rows[static_cast<std::size_t>(place)];
        const QRect rect(QPoint(0, place * row.height()), row);
        const bool isSelected = table.selectedRowIndexes().contains(number);
        painter.fillRect(rect, widget.palette().color(isSelected ? QPalette::Highlight : QPalette::Base));
        paintRow(painter, widget, table, number, rect.topLeft());
    }
    painter.setOpacity(1);
    if (rows.size() > 1)
        paintNumber(painter, widget, rows.size(), row);
}

} // namespace quillbox
