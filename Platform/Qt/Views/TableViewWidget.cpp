#include "TableViewWidget.h"

#include "Appearance.h"
#include "DragPicture.h"
#include "NSScrollView.h"
#include "OfferedFiles.h"
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

    // In logical pixels.
    constexpr double kDropLine = 2;
    constexpr double kDropRing = 3;
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

    std::optional<NSTableView::Command> commandOf(const QKeyEvent& event)
    {
        const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
        if (modifiers == Qt::AltModifier && event.key() == Qt::Key_Up)
            return NSTableView::Command::moveUp;
        if (modifiers == Qt::AltModifier && event.key() == Qt::Key_Down)
            return NSTableView::Command::moveDown;
        if (modifiers != Qt::NoModifier)
            return std::nullopt;
        switch (event.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Insert:
            return NSTableView::Command::add;
        case Qt::Key_Space:
        case Qt::Key_F2:
            return NSTableView::Command::settings;
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            return NSTableView::Command::remove;
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
    for (const auto& [row, widget] : rowWidgets_) {
        if (!selection.contains(row) || !seenRect(shown, row).intersects(damaged))
            continue;
        QStyleOptionViewItem option;
        option.initFrom(this);
        option.rect = seenRect(shown, row);
        option.showDecorationSelected = true;
        option.viewItemPosition = QStyleOptionViewItem::OnlyOne;
        option.state.setFlag(QStyle::State_Selected, true);
        option.state.setFlag(QStyle::State_HasFocus, false);
        option.state.setFlag(QStyle::State_MouseOver, false);
        style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, &painter, this);
    }
}

QRect TableViewWidget::seenRect(const NSTableView& shown, int row) const
{
    QRect rect = shownRect(shown.rectOfRow(row));
    if (const QWidget* widget = rowWidget(row))
        rect.moveTop(widget->y());
    return rect;
}

void TableViewWidget::paintFocus(QPainter& painter, const NSTableView& shown)
{
    const int row = shown.leadRow();
    if (row < 0 || row >= shown.numberOfRows()) {
        // While no row has the keyboard focus, the frame of the whole list shows it.
        painter.setPen(palette().color(QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(visibleRegion().boundingRect().adjusted(0, 0, -1, -1));
        return;
    }
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = seenRect(shown, row);
    option.state |= QStyle::State_KeyboardFocusChange | QStyle::State_Item;
    option.backgroundColor =
        palette().color(shown.selectedRowIndexes().contains(row) ? QPalette::Highlight : QPalette::Base);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void TableViewWidget::paintDropLine(QPainter& painter, const NSTableView& shown, int row) const
{
    // The line is between the rows, and completely visible at both ends of the list.
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
    // This comes last, because the drag may outlive this widget.
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
    const DragPicture picture(*this, *shown, row);
    const int inRow = mapFromGlobal(pressedAt_).y() - shownRect(shown->rectOfRow(row)).top();
    // The picture is to the right of the pointer, so that the drop line can be seen.
    RowDrag::run(std::move(*pasteboard), shown->draggingSourceOperationMaskOutside(), picture.pixmap(),
                 QPoint(-kPictureGap, picture.topOfPressedRow() + inRow));
}

// Keys

void TableViewWidget::keyPressEvent(QKeyEvent* event)
{
    const auto shown = table();
    const bool isPlain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    const auto key = isPlain ? movingKey(event->key()) : std::nullopt;
    if (!shown) {
        event->ignore();
        return;
    }
    if (const auto command = commandOf(*event)) {
        event->setAccepted(shown->userPerforms(*command));
    } else if (key) {
        shown->keyDown(*key, event->modifiers() & Qt::ShiftModifier);
    } else if (event->matches(QKeySequence::SelectAll)) {
        shown->selectAll();
    } else if (event->matches(QKeySequence::Paste)) {
        shown->paste(NSPasteboard::ofFiles(copiedFiles(window()->winId())));
    } else {
        event->ignore();
    }
}

} // namespace quillbox
