#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace quillbox {

// Which rows of a list are in sight and where, for a list of any length. It asks the height of a row only
// when the row is in sight or is scrolled past: the position is kept as a row and the pixels of it that
// are hidden, never as a distance from the first row. Knows nothing of widgets. Rows count from 0; lengths
// are logical pixels, downward.
class MenuLayout {
public:
    // At least one pixel for every row.
    using RowHeight = std::function<int(std::size_t row)>;

    struct VisibleRow {
        std::size_t row = 0;
        // The row's upper edge, counted from that of the part in sight; negative where the row begins above.
        int top = 0;
        int height = 0;
        friend bool operator==(const VisibleRow&, const VisibleRow&) = default;
    };

    MenuLayout(std::size_t rowCount, RowHeight rowHeight);

    std::size_t rowCount() const { return rowCount_; }
    // The height of all rows together, or `limit` where that is less; looks at no more rows than fit in.
    int heightOfRows(int limit) const;
    void setViewportHeight(int height);

    const std::vector<VisibleRow>& visibleRows() const { return visible_; }
    std::optional<VisibleRow> visibleRow(std::size_t row) const;
    std::optional<std::size_t> rowAt(int y) const;

    // Moves by that many pixels, toward later rows where positive. False where nothing moved.
    bool scrollBy(int pixels);
    // Brings the whole row in sight by the shortest way. False where nothing moved.
    bool scrollToRow(std::size_t row);
    bool canScrollUp() const;
    bool canScrollDown() const;

    // The row whose edge is about one part in sight away from `row`, for the page keys.
    std::size_t pageBefore(std::size_t row) const;
    std::size_t pageAfter(std::size_t row) const;

    // Where the part in sight stands in the list, by rows: 0 is the beginning, 1 the end.
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
