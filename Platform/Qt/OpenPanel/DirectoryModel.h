#pragma once

#include "DirectoryListing.h"
#include "Result.h"

#include <QAbstractTableModel>
#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QDateTime;
class QKeySequence;

namespace quillbox {

// The entries of one directory as the open panel's table shows them: name, size, when modified; directories first.
// Hidden ones are left out unless they are asked for, and so is what does not contain the text that is searched for. It
// keeps names as the file system's bytes, which Qt's own model of files loses. A directory is read by read(), once;
// sizes, dates and icons are looked up for the rows that are shown. It watches nothing.
class DirectoryModel final : public QAbstractTableModel {
public:
    // In the order of OpenPanelSettings::Order.
    enum Column { name, size, modified };

    explicit DirectoryModel(QObject* parent) : QAbstractTableModel(parent) { }

    // Shows the directory in place of the one before. One that can't be read has no rows.
    Result<void> read(const std::string& directory);
    const std::string& directory() const { return listing_.directoryPath(); }
    // Whether entries have come or gone since read().
    bool isOutOfDate() const;

    // These two make all rows anew.
    bool showsHidden() const { return showsHidden_; }
    void setShowsHidden(bool shows);
    // Leaves the rows whose names contain the text, in any case; an empty one leaves all.
    void setSearch(const QString& text);
    // The first row whose name begins with that text, else the first of all; -1 where there is none.
    int rowOfSearch() const;

    // How the columns write sizes, in bytes, and moments, in the person's locale.
    static QString sizeText(std::int64_t size);
    static QString dateText(const QDateTime& moment);
    // What is pressed to sort by a column; the headers tell it.
    static QKeySequence keyOfOrder(int column);
    // Files can be chosen by default; otherwise their rows are disabled.
    void setFilesEnabled(bool enabled) { filesEnabled_ = enabled; }

    std::string path(int row) const { return listing_.path(entry(row)); }
    // Good until the next read().
    std::string_view nameOf(int row) const { return listing_.name(entry(row)); }
    // Links are followed. Packages are directories here.
    bool isDirectory(int row) const { return at(row).isDirectory; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    struct Details {
        bool isKnown = false;
        std::int64_t size = 0;
        std::int64_t modified = 0;
    };
    struct Entry {
        bool isDirectory = false;
        std::string sortKey;
        // Looked up when they are first shown or sorted by.
        mutable std::optional<Details> details;
        // What a search looks through; made at the first one.
        mutable QString searched;
    };

    std::size_t entry(int row) const { return rows_[static_cast<std::size_t>(row)]; }
    const Entry& at(int row) const { return entries_[entry(row)]; }
    const Details& detailsOf(std::size_t entry) const;
    const QString& searchedTextOf(std::size_t entry) const;
    QVariant textOf(std::size_t entry, int column) const;
    QVariant iconOf(std::size_t entry) const;
    void makeEntries();
    void makeRows();
    bool isBefore(std::size_t a, std::size_t b) const;
    void sortRows();

    DirectoryListing listing_;
    // When the directory had last changed as it was read, in nanoseconds since 1970; 0 where there was none.
    std::int64_t changed_ = 0;
    // Parallel to the listing.
    std::vector<Entry> entries_;
    // Indices of those that are shown, in the order shown.
    std::vector<std::size_t> rows_;
    QString search_;
    bool showsHidden_ = false;
    bool filesEnabled_ = true;
    int sortColumn_ = name;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

} // namespace quillbox
