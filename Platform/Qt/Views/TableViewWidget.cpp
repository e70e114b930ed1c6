#include "TableViewWidget.h"

#include "Appearance.h"
#include "NSScrollView.h"
#include "RowDrag.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QStyleOptionViewItem>

#include <algorithm>
#include <optional>

namespace quillbox {

namespace {

    // Logical pixels.
    constexpr double kDropLine = 2;
    constexpr double kDropRing = 3;
    constexpr int kMostRowsInPicture = 12;
    constexpr double kPictureOpacity = 0.65;
    constexpr int kPictureGap = 14;

    std::optional<NSTableView::Key> movingKey(int key)
    {
        switch (key) {
        case Qt::Key_Up:
            return NSTableView::Key::up;
        case Qt::Key_Down:
            return NSTableView::Key::down;
        case Qt::Key_PageUp:
            return NSTableView::Key::pageUp;
        case Qt::Key_PageDown:
            return NSTableView::Key::pageDown;
        case Qt::Key_Home:
            return NSTableView::Key::home;
        case Qt::Key_End:
            return NSTableView::Key::end;
        default:
            return std::nullopt;
        }
    }

    NSClipView* clipOf(const NSTableView& table)
    {
        return dynamic_cast<NSClipView*>(table.superview().get());
    }

} // namespace

TableViewWidget::TableViewWidget(std::weak_ptr<NSTableView> table, QWidget* parent)
    : QWidget(parent),
      table_(std::move(table))
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setBackgroundRole(QPalette::Base);
}

void TableViewWidget::setRowWidgets(std::map<int, QPointer<QWidget>> widgets)
{
    rowWidgets_ = std::move(widgets);
}

QWidget* TableViewWidget::rowWidget(int row) const
{
    const auto known = rowWidgets_.find(row);
    return known == rowWidgets_.end() ? nullptr : known->second.data();
}

int TableViewWidget::rowOf(const QWidget* widget) const
{
    const auto known = std::find_if(rowWidgets_.begin(), rowWidgets_.end(),
                                    [widget](const auto& rowAndWidget) { return rowAndWidget.second == widget; });
    return known == rowWidgets_.end() ? -1 : known->first;
}

// Painting

void TableViewWidget::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
    const auto shown = table();
    if (!shown)
        return;
    paintRows(painter, *shown, event->rect());
    if (hasFocus())
        paintFocus(painter, *shown);
    if (shown->dropRow())
        paintDropLine(painter, *shown, *shown->dropRow());
}

void TableViewWidget::paintRows(QPainter& painter, const NSTableView& shown, const QRect& damaged)
{
    const auto& selection = shown.selectedRowIndexes();
    const int first = static_cast<int>(damaged.top() / shown.rowHeight());
    const int last = std::min(shown.numberOfRows() - 1, static_cast<int>(damaged.bottom() / shown.rowHeight()));
    for (int row = first; row <= last; ++row) {
        const bool isSelected = selection.contains(row);
        const bool isAlternate = shown.usesAlternatingRowBackgroundColors() && row % 2 == 1;
        if (!isSelected && !isAlternate)
            continue;
        QStyleOptionViewItem option;
        option.initFrom(this);
        option.rect = shownRect(shown.rectOfRow(row));
        option.showDecorationSelected = true;
        option.viewItemPosition = QStyleOptionViewItem::OnlyOne;
        option.state.setFlag(QStyle::State_Selected, isSelected);
        option.state.setFlag(QStyle::State_HasFocus, false);
        option.state.setFlag(QStyle::State_MouseOver, false);
        option.features.setFlag(QStyleOptionViewItem::Alternate, isAlternate);
        style()->drawPrimitive(isSelected ? QStyle::PE_PanelItemViewItem : QStyle::PE_PanelItemViewRow, &option,
                               &painter, this);
    }
}

void TableViewWidget::paintFocus(QPainter& painter, const NSTableView& shown)
{
    const int row = shown.leadRow();
    if (row < 0 || row >= shown.numberOfRows()) {
        // While the keyboard is on no row, the whole list shows that it has it.
        painter.setPen(palette().color(QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(visibleRegion().boundingRect().adjusted(0, 0, -1, -1));
        return;
    }
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = shownRect(shown.rectOfRow(row));
    option.state |= QStyle::State_KeyboardFocusChange | QStyle::State_Item;
    option.backgroundColor =
        palette().color(shown.selectedRowIndexes().contains(row) ? QPalette::Highlight : QPalette::Base);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void TableViewWidget::paintDropLine(QPainter& painter, const NSTableView& shown, int row) const
{
    // Between the rows, and whole also at both ends.
    const double reach = kDropRing + kDropLine / 2;
    const double y = std::clamp(row * shown.rowHeight(), reach, std::max(reach, height() - reach));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(shownColour(CGColor::controlAccent, palette()), kDropLine));
    painter.drawLine(QPointF(2 * reach, y), QPointF(width(), y));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(reach, y), kDropRing, kDropRing);
}

void TableViewWidget::repaintFor(QFocusEvent*)
{
    update();
}

// The mouse

void TableViewWidget::press(const QMouseEvent& event)
{
    const auto shown = table();
    if (!shown)
        return;
    const int row = shown->rowAtPoint({ event.position().x(), event.position().y() });
    if (row >= 0) {
        if (NSClipView* clip = clipOf(*shown))
            clip->scrollToVisible(shown->rectOfRow(row));
    }
    pressedAt_ = event.globalPosition().toPoint();
    pressedRow_ = row;
    shown->mouseDown(row, event.modifiers() & Qt::ShiftModifier, event.modifiers() & Qt::ControlModifier);
}

void TableViewWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        press(*event);
}

void TableViewWidget::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint moved = event->globalPosition().toPoint() - pressedAt_;
    if (pressedRow_ < 0 || !(event->buttons() & Qt::LeftButton)
        || moved.manhattanLength() < QApplication::startDragDistance())
        return;
    // The last thing here: the drag may outlive this widget.
    beginDrag(std::exchange(pressedRow_, -1));
}

void TableViewWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    pressedRow_ = -1;
    if (const auto shown = table())
        shown->mouseUp();
}

void TableViewWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    press(*event);
    if (const auto shown = table())
        shown->doubleClick(pressedRow_);
}

// Dragging

void TableViewWidget::beginDrag(int row)
{
    const auto shown = table();
    auto pasteboard = [&]() -> std::optional<NSPasteboard> {
        return shown ? shown->beginDragging(row) : std::nullopt;
    }();
    if (!pasteboard)
        return;
    const auto& rows = shown->draggedRows();
    const auto rowsAbove =
        std::min<std::ptrdiff_t>(std::find(rows.begin(), rows.end(), row) - rows.begin(), kMostRowsInPicture - 1);
    const int inRow = mapFromGlobal(pressedAt_).y() - shownRect(shown->rectOfRow(row)).top();
    // Right of the pointer, where it leaves the drop line to be seen.
    RowDrag::run(std::move(*pasteboard), shown->draggingSourceOperationMaskOutside(), dragPicture(*shown),
                 QPoint(-kPictureGap, inRow + static_cast<int>(rowsAbove) * static_cast<int>(shown->rowHeight())));
}

QPixmap TableViewWidget::dragPicture(const NSTableView& shown) const
{
    const int rowHeight = static_cast<int>(shown.rowHeight());
    const int count = std::min(static_cast<int>(shown.draggedRows().size()), kMostRowsInPicture);
    QPixmap picture(QSize(width(), count * rowHeight) * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setOpacity(kPictureOpacity);
    for (int place = 0; place < count; ++place) {
        const int row = shown.draggedRows()[static_cast<std::size_t>(place)];
        const QRect rect(0, place * rowHeight, width(), rowHeight);
        const bool isSelected = shown.selectedRowIndexes().contains(row);
        painter.fillRect(rect, palette().color(isSelected ? QPalette::Highlight : QPalette::Base));
        if (QWidget* widget = rowWidget(row))
            widget->render(&painter, rect.topLeft(), QRegion(), QWidget::DrawChildren);
    }
    return picture;
}

// Keys

void TableViewWidget::keyPressEvent(QKeyEvent* event)
{
    const auto shown = table();
    const bool isPlain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    const auto key = isPlain ? movingKey(event->key()) : std::nullopt;
    if (shown && key) {
        shown->keyDown(*key, event->modifiers() & Qt::ShiftModifier);
    } else if (shown && event->matches(QKeySequence::SelectAll)) {
        shown->selectAll();
    } else if (shown && isPlain && (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)) {
        shown->deleteBackward();
    } else {
        event->ignore();
    }
}

} // namespace quillbox
