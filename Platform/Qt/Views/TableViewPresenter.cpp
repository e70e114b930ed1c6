#include "TableViewPresenter.h"

#include "Animations.h"
#include "TableViewAccessible.h"
#include "TableViewWidget.h"

namespace quillbox {

namespace {

    // The contents of the row take the text colour that goes with this background.
    void showSelected(QWidget& row, bool isSelected)
    {
        const QPalette::ColorRole role = isSelected ? QPalette::Highlight : QPalette::Base;
        if (row.backgroundRole() != role)
            row.setBackgroundRole(role);
    }

} // namespace

TableViewPresenter::TableViewPresenter(const std::shared_ptr<NSTableView>& table, QWidget& parent)
    : ViewPresenter(table, new TableViewWidget(table, &parent)),
      slide_(*widget()),
      shownSlides_(table->slideCount())
{
    // The desktop is asked now, so that its answer is there when something moves.
    static_cast<void>(animationDuration(*widget()));
}

void TableViewPresenter::showContent(NSView& view)
{
    const auto& table = dynamic_cast<const NSTableView&>(view);
    if (std::exchange(shownSlides_, table.slideCount()) != table.slideCount())
        slide_.rowsWillChange(below());
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
    slide_.rowsShown(table, below());
    if (const int row = std::exchange(toldRow_, table.leadRow()); row != table.leadRow() && tableWidget->hasFocus())
        tellRowFocus(*tableWidget, table.leadRow());
    if (std::exchange(toldAnnouncements_, table.announcementCount()) != table.announcementCount())
        tellAnnouncement(*tableWidget, table.announcement());
}

} // namespace quillbox
