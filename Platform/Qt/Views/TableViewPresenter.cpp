#include "TableViewPresenter.h"

#include "TableViewAccessible.h"
#include "TableViewWidget.h"

namespace quillbox {

namespace {

    // What is on the row takes the colour that goes with this background.
    void showSelected(QWidget& row, bool isSelected)
    {
        const QPalette::ColorRole role = isSelected ? QPalette::Highlight : QPalette::Base;
        if (row.backgroundRole() != role)
            row.setBackgroundRole(role);
    }

} // namespace

TableViewPresenter::TableViewPresenter(const std::shared_ptr<NSTableView>& table, QWidget& parent)
    : ViewPresenter(table, new TableViewWidget(table, &parent))
{
}

void TableViewPresenter::showContent(NSView&)
{
    widget()->update();
}

void TableViewPresenter::subviewsShown(NSView& view)
{
    const auto& table = dynamic_cast<const NSTableView&>(view);
    std::map<const NSView*, int> rows;
    for (const auto& [row, rowView] : table.visibleRowViews())
        rows.emplace(rowView.get(), row);
    std::map<int, QPointer<QWidget>> widgets;
    for (const auto& presenter : below()) {
        const auto known = rows.find(presenter->view().get());
        if (known == rows.end())
            continue;
        widgets.emplace(known->second, presenter->widget());
        showSelected(*presenter->widget(), table.selectedRowIndexes().contains(known->second));
    }
    auto* tableWidget = static_cast<TableViewWidget*>(widget());
    tableWidget->setRowWidgets(std::move(widgets));
    if (const int row = std::exchange(toldRow_, table.leadRow()); row != table.leadRow() && tableWidget->hasFocus())
        tellRowFocus(*tableWidget, table.leadRow());
}

} // namespace quillbox
