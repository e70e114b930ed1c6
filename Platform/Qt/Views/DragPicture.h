#pragma once

#include "NSTableView.h"

#include <QPixmap>

namespace quillbox {

class TableViewWidget;

// The picture at the pointer while rows are dragged: the first rows, whether they are visible or not, and how many
// there are.
class DragPicture {
public:
    // Shows the rows of the table's last drag. `pressedRow` is the row under the pointer.
    DragPicture(TableViewWidget& widget, NSTableView& table, int pressedRow);

    const QPixmap& pixmap() const { return pixmap_; }
    // In logical pixels from the top of the picture. If the row is not in the picture, it is the position of the last
    // one that is.
    int topOfPressedRow() const { return topOfPressedRow_; }

private:
    QPixmap pixmap_;
    int topOfPressedRow_ = 0;
};

} // namespace quillbox
