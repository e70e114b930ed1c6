#pragma once

#include "NSTableView.h"

#include <QPixmap>

namespace quillbox {

class TableViewWidget;

// What hangs on the pointer while rows are dragged: the first of them, in sight or not, and how many there are.
class DragPicture {
public:
    // Of the rows that the table's last drag has; `pressedRow` is where the pointer is.
    DragPicture(TableViewWidget& widget, NSTableView& table, int pressedRow);

    const QPixmap& pixmap() const { return pixmap_; }
    // Logical pixels from the top of the picture. A row that is not in the picture counts as the last one that is.
    int topOfPressedRow() const { return topOfPressedRow_; }

private:
    QPixmap pixmap_;
    int topOfPressedRow_ = 0;
};

} // namespace quillbox
