#include "FilesTable.h"

#include "DirectoryModel.h"
#include "URL.h"

#include <QDateTime>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace quillbox {

namespace {

    // Sizes and moments that are among the longest to write in any locale.
    QStringList longSizes()
    {
        return { DirectoryModel::sizeText(999), DirectoryModel::sizeText(1'048'552),
                 DirectoryModel::sizeText(1'072'693'248) };
    }

    QStringList longDates()
    {
        QStringList texts;
        for (int month = 1; month <= 12; ++month) {
            for (const int hour : { 10, 22 })
                texts.append(DirectoryModel::dateText(QDateTime(QDate(2028, month, 28), QTime(hour, 58, 58))));
        }
        return texts;
    }

} // namespace

FilesTable::FilesTable(DirectoryModel& model, QWidget* parent)
    : QTreeView(parent),
      model_(model),
      emptyNote_(new QLabel(viewport()))
{
    setAccessibleName(QStringLiteral("Files"));
    setModel(&model);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setTextElideMode(Qt::ElideMiddle);
    setSortingEnabled(true);
    setUpColumns();
    connect(this, &QTreeView::doubleClicked, this, [this] { onOpen(); });
    // The header takes no keys.
    for (int column = 0; column < model.columnCount(); ++column)
        connect(new QShortcut(DirectoryModel::keyOfOrder(column), this), &QShortcut::activated, this,
                [this, column] { toggleOrder(column); });

    emptyNote_->setTextFormat(Qt::PlainText);
    emptyNote_->setWordWrap(true);
    emptyNote_->setAlignment(Qt::AlignCenter);
    auto* over = new QVBoxLayout(viewport());
    over->addWidget(emptyNote_);
}

void FilesTable::setUpColumns()
{
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(DirectoryModel::name, QHeaderView::Stretch);
    header()->resizeSection(DirectoryModel::size, widthOf(DirectoryModel::size, longSizes()));
    header()->resizeSection(DirectoryModel::modified, widthOf(DirectoryModel::modified, longDates()));
}

int FilesTable::widthOf(int column, const QStringList& texts) const
{
    int widest = 0;
    for (const QString& text : texts)
        widest = std::max(widest, fontMetrics().horizontalAdvance(text));
    // What styles leave free on each side of an item's text, and two characters to keep the columns apart.
    const int margins = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1);
    return std::max(widest + margins + 2 * fontMetrics().averageCharWidth(), header()->sectionSizeHint(column));
}

void FilesTable::setShowsHidden(bool shows)
{
    const std::vector<std::string> selected = selectedNames();
    model_.setShowsHidden(shows);
    select(selected);
}

void FilesTable::search(const QString& text)
{
    const std::vector<std::string> selected = selectedNames();
    isSearching_ = !text.isEmpty();
    model_.setSearch(text);
    if (!isSearching_)
        return select(selected);
    const QModelIndex found = model_.index(model_.rowOfSearch(), 0);
    selectionModel()->setCurrentIndex(found, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void FilesTable::setOrder(OpenPanelSettings::Order order, bool isAscending)
{
    sortByColumn(static_cast<int>(order), isAscending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

OpenPanelSettings::Order FilesTable::order() const
{
    return static_cast<OpenPanelSettings::Order>(header()->sortIndicatorSection());
}

bool FilesTable::isAscending() const
{
    return header()->sortIndicatorOrder() == Qt::AscendingOrder;
}

void FilesTable::toggleOrder(int column)
{
    const auto order = static_cast<OpenPanelSettings::Order>(column);
    setOrder(order, order != this->order() || !isAscending());
}

void FilesTable::setEmptyNote(const QString& text, bool isFailure)
{
    emptyNote_->setEnabled(isFailure);
    emptyNote_->setText(text);
    emptyNote_->setVisible(model_.rowCount() == 0);
}

void FilesTable::select(const std::vector<std::string>& names)
{
    const std::unordered_set<std::string_view> wanted(names.begin(), names.end());
    QItemSelection selection;
    int first = -1;
    // Rows that follow one another make one range, since there may be thousands.
    int rangeStart = -1;
    for (int row = 0; row <= model_.rowCount(); ++row) {
        const bool isWanted = row < model_.rowCount() && wanted.contains(model_.nameOf(row));
        if (isWanted && rangeStart < 0)
            rangeStart = row;
        if (isWanted || rangeStart < 0)
            continue;
        selection.select(model_.index(rangeStart, 0), model_.index(row - 1, model_.columnCount() - 1));
        first = first < 0 ? rangeStart : first;
        rangeStart = -1;
    }
    if (model_.rowCount() > 0) {
        const QModelIndex current = model_.index(std::max(first, 0), 0);
        selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
        scrollTo(current);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

std::vector<std::string> FilesTable::selectedPaths() const
{
    const QModelIndexList selected = selectionModel()->selectedRows();
    std::vector<int> rows(static_cast<std::size_t>(selected.size()));
    std::transform(selected.begin(), selected.end(), rows.begin(),
                   [](const QModelIndex& index) { return index.row(); });
    std::sort(rows.begin(), rows.end());
    std::vector<std::string> paths(rows.size());
    std::transform(rows.begin(), rows.end(), paths.begin(), [this](int row) { return model_.path(row); });
    return paths;
}

std::vector<std::string> FilesTable::selectedNames() const
{
    std::vector<std::string> names = selectedPaths();
    for (std::string& name : names)
        name = path::lastPathComponent(name);
    return names;
}

void FilesTable::keyPressEvent(QKeyEvent* event)
{
    // Keys with these are the dialog's shortcuts, or extend the selection.
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return QTreeView::keyPressEvent(event);
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return onOpen();
    case Qt::Key_Backspace:
        return onUp();
    case Qt::Key_Escape:
        if (isSearching_)
            return onSearchEnded();
        break;
    case Qt::Key_Slash:
    case Qt::Key_AsciiTilde:
        return onPathBegun(event->text());
    default:
        break;
    }
    // A blank selects, as in any list.
    if (const QString text = event->text(); !text.isEmpty() && text[0].isPrint() && text[0] != QChar(' '))
        return onSearchBegun(text);
    QTreeView::keyPressEvent(event);
}

} // namespace quillbox
