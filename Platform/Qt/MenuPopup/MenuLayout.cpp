#include "MenuLayout.h"

#include "Check.h"

#include <algorithm>

namespace quillbox {

MenuLayout::MenuLayout(std::size_t rowCount, RowHeight rowHeight)
    : rowCount_(rowCount),
      rowHeight_(std::move(rowHeight))
{
}

int MenuLayout::heightOfRows(int limit) const
{
    int height = 0;
    for (std::size_t row = 0; row < rowCount_ && height < limit; ++row)
        height += rowHeight_(row);
    return std::min(height, limit);
}

void MenuLayout::setViewportHeight(int height)
{
    viewportHeight_ = std::max(height, 0);
    update();
}

std::optional<MenuLayout::VisibleRow> MenuLayout::visibleRow(std::size_t row) const
{
    if (visible_.empty() || row < visible_.front().row || row > visible_.back().row)
        return std::nullopt;
    return visible_[row - visible_.front().row];
}

std::optional<std::size_t> MenuLayout::rowAt(int y) const
{
    if (y < 0 || y >= viewportHeight_)
        return std::nullopt;
    for (const VisibleRow& visible : visible_)
        if (y < visible.top + visible.height)
            return visible.row;
    return std::nullopt;
}

bool MenuLayout::scrollBy(int pixels)
{
    const std::size_t oldRow = firstRow_;
    const int oldHidden = hiddenOfFirst_;
    if (rowCount_ == 0)
        return false;
    hiddenOfFirst_ += pixels;
    while (hiddenOfFirst_ < 0 && firstRow_ > 0)
        hiddenOfFirst_ += rowHeight_(--firstRow_);
    hiddenOfFirst_ = std::max(hiddenOfFirst_, 0);
    for (int height = rowHeight_(firstRow_); hiddenOfFirst_ >= height; height = rowHeight_(firstRow_)) {
        if (firstRow_ + 1 == rowCount_) {
            hiddenOfFirst_ = height - 1;
            break;
        }
        hiddenOfFirst_ -= height;
        ++firstRow_;
    }
    update();
    return firstRow_ != oldRow || hiddenOfFirst_ != oldHidden;
}

bool MenuLayout::scrollToRow(std::size_t row)
{
    QB_CHECK(row < rowCount_);
    const std::optional<VisibleRow> visible = visibleRow(row);
    if (visible && visible->top >= 0 && visible->top + visible->height <= viewportHeight_)
        return false;
    if (row < firstRow_ || (visible && visible->top < 0)) {
        firstRow_ = row;
        hiddenOfFirst_ = 0;
    } else {
        putLastRowAtBottom(row);
    }
    update();
    return true;
}

bool MenuLayout::canScrollUp() const
{
    return firstRow_ > 0 || hiddenOfFirst_ > 0;
}

bool MenuLayout::canScrollDown() const
{
    if (visible_.empty())
        return false;
    const VisibleRow& last = visible_.back();
    return last.row + 1 < rowCount_ || last.top + last.height > viewportHeight_;
}

std::size_t MenuLayout::pageBefore(std::size_t row) const
{
    for (int left = viewportHeight_ - rowHeight_(row); row > 0; --row) {
        left -= rowHeight_(row - 1);
        if (left < 0)
            break;
    }
    return row;
}

std::size_t MenuLayout::pageAfter(std::size_t row) const
{
    for (int left = viewportHeight_ - rowHeight_(row); row + 1 < rowCount_; ++row) {
        left -= rowHeight_(row + 1);
        if (left < 0)
            break;
    }
    return row;
}

MenuLayout::Extent MenuLayout::extent() const
{
    if (visible_.empty())
        return {};
    const auto count = static_cast<double>(rowCount_);
    const VisibleRow& first = visible_.front();
    const VisibleRow& last = visible_.back();
    const double hiddenAbove = -static_cast<double>(first.top) / first.height;
    const double hiddenBelow =
        std::max(0.0, static_cast<double>(last.top + last.height - viewportHeight_) / last.height);
    return { (static_cast<double>(first.row) + hiddenAbove) / count,
             (static_cast<double>(last.row) + 1 - hiddenBelow) / count };
}

void MenuLayout::putLastRowAtBottom(std::size_t row)
{
    int left = viewportHeight_ - rowHeight_(row);
    while (row > 0 && left > 0)
        left -= rowHeight_(--row);
    firstRow_ = row;
    hiddenOfFirst_ = std::max(-left, 0);
}

void MenuLayout::update()
{
    const auto layOut = [this] {
        visible_.clear();
        int top = -hiddenOfFirst_;
        for (std::size_t row = firstRow_; row < rowCount_ && top < viewportHeight_; ++row) {
            visible_.push_back({ row, top, rowHeight_(row) });
            top += visible_.back().height;
        }
        return top;
    };
    // There must be no empty space below the last row while rows above are hidden.
    if (layOut() < viewportHeight_ && canScrollUp()) {
        putLastRowAtBottom(rowCount_ - 1);
        layOut();
    }
}

} // namespace quillbox
