#pragma once

#include "TableViewWidget.h"

#include <QAccessibleWidget>

#include <map>
#include <string>

namespace quillbox {

// A table as an assistive technology sees it: a list with all of its rows, those out of sight too. Rows in sight
// are their widgets; for another row an interface is made when it is asked for. The toolkit owns this.
class TableViewAccessible final : public QAccessibleWidget {
public:
    explicit TableViewAccessible(TableViewWidget& widget);
    ~TableViewAccessible() override;

    int childCount() const override;
    QAccessibleInterface* child(int row) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QAccessible::State state() const override;
    // The last thing that was done with the rows counts as the description.
    QString text(QAccessible::Text kind) const override;

private:
    TableViewWidget& table() const { return *static_cast<TableViewWidget*>(widget()); }

    mutable std::map<int, QAccessible::Id> outOfSight_;
};

// Of a row's widget.
QAccessibleInterface* makeRowAccessible(QWidget& row);

// Something was done with the rows that the person may not see.
void tellAnnouncement(TableViewWidget& widget, const std::string& text);
// The keyboard has moved to that row.
void tellRowFocus(TableViewWidget& widget, int row);

} // namespace quillbox
