#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace quillbox {

// Determines which rows of a list are visible and where, for a list of any length. It asks for the height of a row only
// if the row is visible or is scrolled past: the scroll position is kept as a row and the number of its pixels that are
// hidden, never as a distance from the first row. It is independent of widgets. Rows count from 0; lengths are in
// logical pixels, downwards.
class MenuLayout {
public:
    // Returns at least one pixel for every row.
    using RowHeight = std::function<int(std::size_t row)>;

    struct VisibleRow {
        std::size_t row = 0;
        // The upper edge of the row, from that of the visible part; negative if the row begins above it.
        int top = 0;
        int height = 0;
        friend bool operator==(const VisibleRow&, const VisibleRow&) = default;
    };

    MenuLayout(std::size_t rowCount, RowHeight rowHeight);

    std::size_t rowCount() const { return rowCount_; }
    // Returns the height of all rows together, or `limit` if that is less. It asks for no more rows than fit into
    // `limit`.
    int heightOfRows(int limit) const;
    void setViewportHeight(int height);

    const std::vector<VisibleRow>& visibleRows() const { return visible_; }
    std::optional<VisibleRow> visibleRow(std::size_t row) const;
    std::optional<std::size_t> rowAt(int y) const;

    // Scrolls by that many pixels, towards later rows if positive. Returns false if nothing moved.
    bool scrollBy(int pixels);
    // Scrolls as little as possible to make the whole row visible. Returns false if nothing moved.
    bool scrollToRow(std::size_t row);
    bool canScrollUp() const;
    bool canScrollDown() const;

    // Returns the row that is about one visible part away from `row`, for the page keys.
    std::size_t pageBefore(std::size_t row) const;
    std::size_t pageAfter(std::size_t row) const;

    // The visible part as fractions of the list, by rows: 0 is the beginning, 1 the end.
    struct Extent {
        double begin = 0;
        double end = 1;
    };
    Extent extent() const;

private:
    void putLastRowAtBottom(std::size_t row);
    void update();

    std::size_t rowCount_;
    RowHeight rowHeight_;
    int viewportHeight_ = 0;
    std::size_t firstRow_ = 0;
    int hiddenOfFirst_ = 0;
    std::vector<VisibleRow> visible_;
};

} // namespace quillbox
