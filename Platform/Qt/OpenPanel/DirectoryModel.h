#pragma once

#include "DirectoryListing.h"
#include "Result.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// The entries of one directory as the open panel's table shows them: name, size, when modified; directories first.
// It keeps names as the file system's bytes, which Qt's own model of files loses. A directory is read by read(),
// once; sizes, dates and icons are looked up for the rows that are shown. It watches nothing.
class DirectoryModel final : public QAbstractTableModel {
public:
    enum Column { name, size, modified };

    explicit DirectoryModel(QObject* parent) : QAbstractTableModel(parent) { }

    // Shows the directory in place of the one before. One that can't be read has no rows.
    Result<void> read(const std::string& directory);
    const std::string& directory() const { return listing_.directoryPath(); }
    // Whether entries have come or gone since read().
    bool isOutOfDate() const;

    bool showsHidden() const { return showsHidden_; }
    void setShowsHidden(bool shows);
    // Files can be chosen by default; otherwise their rows are disabled.
    void setFilesEnabled(bool enabled) { filesEnabled_ = enabled; }

    std::string path(int row) const { return listing_.path(entry(row)); }
    // Good until the next read().
    std::string_view nameOf(int row) const { return listing_.name(entry(row)); }
    // Links are followed. Packages are directories here.
    bool isDirectory(int row) const { return rows_[static_cast<std::size_t>(row)].isDirectory; }

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
    struct Row {
        std::size_t entry;
        bool isDirectory;
        std::string sortKey;
        // Looked up when they are first shown or sorted by.
        mutable std::optional<Details> details;
    };

    std::size_t entry(int row) const { return rows_[static_cast<std::size_t>(row)].entry; }
    const Details& detailsOf(const Row& row) const;
    QVariant textOf(const Row& row, int column) const;
    QVariant iconOf(const Row& row) const;
    void makeRows();
    bool isBefore(const Row& a, const Row& b) const;
    void sortRows();

    DirectoryListing listing_;
    // When the directory had last changed as it was read, in nanoseconds since 1970; 0 where there was none.
    std::int64_t changed_ = 0;
    // In the order shown.
    std::vector<Row> rows_;
    bool showsHidden_ = false;
    bool filesEnabled_ = true;
    int sortColumn_ = name;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

} // namespace quillbox
