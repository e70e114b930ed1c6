#pragma once

#include "NSTableView.h"

#include <QPointer>
#include <QWidget>

#include <map>
#include <memory>

namespace quillbox {

// The area of a table's rows. The widgets of visible rows are its children; they leave mouse and keys to it, except in
// controls of their own.
class TableViewWidget final : public QWidget {
public:
    TableViewWidget(std::weak_ptr<NSTableView> table, QWidget* parent);

    std::shared_ptr<NSTableView> table() const { return table_.lock(); }
    // The widgets by row, for the picture of a drag and for assistive technologies.
    void setRowWidgets(std::map<int, QPointer<QWidget>> widgets);
    QWidget* rowWidget(int row) const;
    // Returns -1 if the widget is no row of this table.
    int rowOf(const QWidget* widget) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override { repaintFor(event); }
    void focusOutEvent(QFocusEvent* event) override { repaintFor(event); }

private:
    void repaintFor(QFocusEvent* event);
    void press(const QMouseEvent& event);
    void beginDrag(int row);
    void paintRows(QPainter& painter, const NSTableView& table, const QRect& damaged);
    // Returns where the row is shown, which may be on the way to its place.
    QRect seenRect(const NSTableView& table, int row) const;
    void paintFocus(QPainter& painter, const NSTableView& table);
    void paintDropLine(QPainter& painter, const NSTableView& table, int row) const;

    std::weak_ptr<NSTableView> table_;
    std::map<int, QPointer<QWidget>> rowWidgets_;
    // Where the button was pressed and on which row; the row is -1 while no button is pressed or a drag runs.
    QPoint pressedAt_;
    int pressedRow_ = -1;
};

} // namespace quillbox
