#pragma once

#include "TableViewWidget.h"

#include <QAccessibleWidget>

#include <map>
#include <string>

namespace quillbox {

// A table for assistive technologies: a list of all its rows, visible or not. A visible row is represented by its
// widget; for another one an interface is made when it is asked for. The toolkit owns this object.
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
    // The last thing that was done with the rows is given as the description.
    QString text(QAccessible::Text kind) const override;

private:
    TableViewWidget& table() const { return *static_cast<TableViewWidget*>(widget()); }

    mutable std::map<int, QAccessible::Id> outOfSight_;
};

// Makes the interface of a row's widget.
QAccessibleInterface* makeRowAccessible(QWidget& row);

// Tells assistive technologies what was done with the rows.
void tellAnnouncement(TableViewWidget& widget, const std::string& text);
// Tells assistive technologies that the keyboard focus has moved to that row.
void tellRowFocus(TableViewWidget& widget, int row);

} // namespace quillbox
