#include "FilesTable.h"

#include "DirectoryModel.h"
#include "URL.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace quillbox {

namespace {

    constexpr int kSizeCharacters = 12;
    constexpr int kDateCharacters = 22;

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
    sortByColumn(DirectoryModel::name, Qt::AscendingOrder);
    setUpColumns();
    connect(this, &QTreeView::doubleClicked, this, [this] { onOpen(); });

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
    const int character = fontMetrics().averageCharWidth();
    header()->resizeSection(DirectoryModel::size, character * kSizeCharacters);
    header()->resizeSection(DirectoryModel::modified, character * kDateCharacters);
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
    case Qt::Key_Slash:
    case Qt::Key_AsciiTilde:
        return onPathBegun(event->text());
    default:
        QTreeView::keyPressEvent(event);
    }
}

} // namespace quillbox
