#include "DirectoryModel.h"

#include "FileManager.h"
#include "ImageRenderer.h"
#include "MenuText.h"
#include "NSWorkspace.h"
#include "PathStatus.h"
#include "StringComparison.h"
#include "Unicode.h"

#include <QDateTime>
#include <QGuiApplication>
#include <QKeySequence>
#include <QLocale>
#include <QPalette>

#include <algorithm>
#include <numeric>

namespace quillbox {

namespace {

    constexpr double kIconSide = 16;
    constexpr Qt::Alignment kNumberAlignment = Qt::AlignRight | Qt::AlignVCenter;

    using EntryKind = DirectoryListing::EntryKind;

    std::optional<struct stat> statusOf(const std::string& path)
    {
        const Result<struct stat> status = statusOfPath(path);
        return status ? std::optional(*status) : std::nullopt;
    }

    std::int64_t changeTime(const std::string& directory)
    {
        const auto status = statusOf(directory);
        return status ? std::int64_t { status->st_mtim.tv_sec } * 1'000'000'000 + status->st_mtim.tv_nsec : 0;
    }

    bool leadsToDirectory(const std::string& path)
    {
        const auto status = statusOf(path);
        return status && S_ISDIR(status->st_mode);
    }

    // Texts that differ in case, or in how Unicode composes the same characters, are one when searching.
    QString searchedForm(const QString& text)
    {
        return text.normalized(QString::NormalizationForm_KC).toCaseFolded();
    }

} // namespace

Result<void> DirectoryModel::read(const std::string& directory)
{
    beginResetModel();
    changed_ = changeTime(directory);
    auto read = FileManager::defaultManager().contentsOfDirectory(URL::fileURLWithPath(directory),
                                                                  DirectoryEnumerationOptions::none);
    listing_ = read ? std::move(*read) : DirectoryListing(directory);
    makeEntries();
    makeRows();
    endResetModel();
    return read ? Result<void>() : Result<void>(read.error());
}

bool DirectoryModel::isOutOfDate() const
{
    return changeTime(directory()) != changed_;
}

void DirectoryModel::setShowsHidden(bool shows)
{
    beginResetModel();
    showsHidden_ = shows;
    makeRows();
    endResetModel();
}

void DirectoryModel::setSearch(const QString& text)
{
    beginResetModel();
    search_ = searchedForm(text);
    makeRows();
    endResetModel();
}

int DirectoryModel::rowOfSearch() const
{
    const auto found = std::find_if(rows_.begin(), rows_.end(),
                                    [this](std::size_t entry) { return searchedTextOf(entry).startsWith(search_); });
    if (found != rows_.end())
        return static_cast<int>(found - rows_.begin());
    return rows_.empty() ? -1 : 0;
}

void DirectoryModel::makeEntries()
{
    entries_.assign(listing_.count(), {});
    for (std::size_t i = 0; i < listing_.count(); ++i) {
        const EntryKind kind = listing_.kind(i);
        entries_[i].isDirectory = kind == EntryKind::directory
            || ((kind == EntryKind::symbolicLink || kind == EntryKind::unknown) && leadsToDirectory(listing_.path(i)));
        entries_[i].sortKey = nameSortKey(listing_.name(i));
    }
}

void DirectoryModel::makeRows()
{
    rows_.clear();
    for (std::size_t i = 0; i < listing_.count(); ++i) {
        if (!showsHidden_ && listing_.isHidden(listing_.name(i)))
            continue;
        if (search_.isEmpty() || searchedTextOf(i).contains(search_))
            rows_.push_back(i);
    }
    sortRows();
}

const QString& DirectoryModel::searchedTextOf(std::size_t entry) const
{
    QString& text = entries_[entry].searched;
    if (text.isNull())
        text = searchedForm(QString::fromStdString(unicode::displayText(listing_.name(entry))));
    return text;
}

const DirectoryModel::Details& DirectoryModel::detailsOf(std::size_t entry) const
{
    std::optional<Details>& details = entries_[entry].details;
    if (!details) {
        const std::string path = listing_.path(entry);
        Result<struct stat> status = statusOfPath(path);
        // A link that leads nowhere is shown with its own size and date.
        if (!status)
            status = statusOfPath(path, LastLink::notFollowed);
        details = status ? Details { true, status->st_size, status->st_mtim.tv_sec } : Details {};
    }
    return *details;
}

bool DirectoryModel::isBefore(std::size_t firstEntry, std::size_t secondEntry) const
{
    const Entry& a = entries_[firstEntry];
    const Entry& b = entries_[secondEntry];
    if (a.isDirectory != b.isDirectory)
        return a.isDirectory;
    const bool isAscending = sortOrder_ == Qt::AscendingOrder;
    if (sortColumn_ == name)
        return isAscending ? a.sortKey < b.sortKey : b.sortKey < a.sortKey;
    // Directories have no size to speak of.
    if (sortColumn_ == modified || !a.isDirectory) {
        const Details& first = detailsOf(firstEntry);
        const Details& second = detailsOf(secondEntry);
        const auto one = sortColumn_ == size ? first.size : first.modified;
        const auto other = sortColumn_ == size ? second.size : second.modified;
        if (one != other)
            return isAscending ? one < other : one > other;
    }
    return a.sortKey < b.sortKey;
}

void DirectoryModel::sortRows()
{
    std::stable_sort(rows_.begin(), rows_.end(), [this](std::size_t a, std::size_t b) { return isBefore(a, b); });
}

void DirectoryModel::sort(int column, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<std::size_t> entries;
    for (const QModelIndex& index : before)
        entries.push_back(entry(index.row()));
    sortColumn_ = column;
    sortOrder_ = order;
    sortRows();
    std::vector<int> rowOfEntry(listing_.count(), -1);
    for (std::size_t row = 0; row < rows_.size(); ++row)
        rowOfEntry[rows_[row]] = static_cast<int>(row);
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after.append(index(rowOfEntry[entries[static_cast<std::size_t>(i)]], before[i].column()));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

int DirectoryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int DirectoryModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : modified + 1;
}

QVariant DirectoryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::TextAlignmentRole && section != name)
        return QVariant::fromValue(kNumberAlignment);
    if (role == Qt::ToolTipRole)
        return QStringLiteral("Sorts by this (%1)").arg(keyOfOrder(section).toString());
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case name:
        return QStringLiteral("Name");
    case size:
        return QStringLiteral("Size");
    default:
        return QStringLiteral("Modified");
    }
}

QVariant DirectoryModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const std::size_t entry = this->entry(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return textOf(entry, index.column());
    case Qt::DecorationRole:
        return index.column() == name ? iconOf(entry) : QVariant();
    case Qt::ToolTipRole:
        return index.column() == name ? toolTipMarkup(textOf(entry, name).toString()) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() != name ? QVariant::fromValue(kNumberAlignment) : QVariant();
    default:
        return {};
    }
}

QVariant DirectoryModel::textOf(std::size_t entry, int column) const
{
    if (column == name)
        return shownOnOneLine(unicode::displayText(listing_.name(entry)));
    if (!detailsOf(entry).isKnown || (column == size && entries_[entry].isDirectory))
        return {};
    switch (column) {
    case size:
        return sizeText(detailsOf(entry).size);
    default:
        return dateText(QDateTime::fromSecsSinceEpoch(detailsOf(entry).modified));
    }
}

QKeySequence DirectoryModel::keyOfOrder(int column)
{
    return QKeySequence(QStringLiteral("Ctrl+%1").arg(column + 1));
}

QString DirectoryModel::sizeText(std::int64_t size)
{
    return QLocale().formattedDataSize(size);
}

QString DirectoryModel::dateText(const QDateTime& moment)
{
    return QLocale().toString(moment, QLocale::ShortFormat);
}

QVariant DirectoryModel::iconOf(std::size_t entry) const
{
    NSImage icon = NSWorkspace::sharedWorkspace().icon(listing_.path(entry), listing_.kind(entry));
    icon.setSize({ kIconSide, kIconSide });
    return ImageRenderer::pixmap(icon, qGuiApp->devicePixelRatio(), qGuiApp->palette().color(QPalette::Text));
}

Qt::ItemFlags DirectoryModel::flags(const QModelIndex& index) const
{
    if (index.isValid() && !filesEnabled_ && !isDirectory(index.row()))
        return Qt::ItemNeverHasChildren;
    return QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
}

} // namespace quillbox
