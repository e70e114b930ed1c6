#include "NSTableView.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "NSScrollView.h"
#include "NSTextField.h"
#include "WindowDisplay.h"

#include <algorithm>
#include <cmath>

namespace quillbox {

namespace {
    // From the table's left and right edges to its rows' views, in points.
    constexpr double kCellInset = 4;
} // namespace

NSTableView::NSTableView() = default;

double NSTableView::rowHeight() const
{
    return NSApplication::shared().desktop().windows().tableRowHeight();
}

NSSize NSTableView::naturalSize(double) const
{
    return { kNoNaturalLength, rowCount_ * rowHeight() };
}

NSRect NSTableView::rectOfRow(int row) const
{
    return { { 0, row * rowHeight() }, { frame().size.width, rowHeight() } };
}

int NSTableView::rowAtPoint(NSPoint point) const
{
    const int row = static_cast<int>(std::floor(point.y / rowHeight()));
    return row >= 0 && row < rowCount_ ? row : -1;
}

std::shared_ptr<NSView> NSTableView::viewAtRow(int row) const
{
    const auto known = rowViews_.find(row);
    return known == rowViews_.end() ? nullptr : known->second;
}

std::string NSTableView::textOfRow(int row)
{
    const auto delegate = delegate_.lock();
    std::vector<std::shared_ptr<NSView>> views { viewAtRow(row) };
    if (!views[0] && delegate && row >= 0 && row < rowCount_)
        views[0] = delegate->viewForRow(*this, row);
    while (!views.empty()) {
        const std::shared_ptr<NSView> view = views.back();
        views.pop_back();
        if (const auto* field = dynamic_cast<const NSTextField*>(view.get()))
            return field->stringValue();
        if (view)
            views.insert(views.end(), view->subviews().begin(), view->subviews().end());
    }
    return {};
}

// Rows

void NSTableView::reloadData()
{
    const auto source = dataSource_.lock();
    rowCount_ = source ? source->numberOfRows(*this) : 0;
    isLoaded_ = true;
    dropViewsFrom(0, rowCount_);
    std::set<int> kept;
    std::copy_if(selection_.begin(), selection_.end(), std::inserter(kept, kept.end()),
                 [this](int row) { return row < rowCount_; });
    setSelection(std::move(kept));
    lead_ = std::min(lead_, rowCount_ - 1);
    anchor_ = std::min(anchor_, rowCount_ - 1);
    naturalSizeDidChange();
    setNeedsLayout();
}

void NSTableView::reloadData(int forRow, int)
{
    dropViewsFrom(forRow, forRow);
    setNeedsLayout();
}

void NSTableView::insertRows(NSRange range, Animation)
{
    const int first = static_cast<int>(range.location);
    const int count = static_cast<int>(range.length);
    // Those below are asked for anew too: their views know their row's number.
    dropViewsFrom(first, rowCount_);
    rowCount_ += count;
    const auto moved = [&](int row) { return row >= first ? row + count : row; };
    std::set<int> shifted;
    for (const int row : selection_)
        shifted.insert(shifted.end(), moved(row));
    anchor_ = moved(anchor_);
    lead_ = moved(lead_);
    setSelection(std::move(shifted));
    naturalSizeDidChange();
    setNeedsLayout();
}

void NSTableView::removeRows(const std::set<int>& rows, Animation)
{
    if (rows.empty())
        return;
    dropViewsFrom(*rows.begin(), rowCount_);
    rowCount_ -= static_cast<int>(rows.size());
    std::set<int> left;
    for (const int row : selection_) {
        if (!rows.contains(row))
            left.insert(row - static_cast<int>(std::distance(rows.begin(), rows.lower_bound(row))));
    }
    // The keyboard stays where it was, on the row that came up.
    lead_ = std::min(lead_ - static_cast<int>(std::distance(rows.begin(), rows.lower_bound(lead_))), rowCount_ - 1);
    anchor_ = lead_;
    setSelection(std::move(left));
    naturalSizeDidChange();
    setNeedsLayout();
}

void NSTableView::moveRow(int at, int to)
{
    dropViewsFrom(std::min(at, to), std::max(at, to));
    const auto moved = [&](int row) {
        if (row == at)
            return to;
        if (at < row && row <= to)
            return row - 1;
        return to <= row && row < at ? row + 1 : row;
    };
    std::set<int> shifted;
    for (const int row : selection_)
        shifted.insert(moved(row));
    anchor_ = moved(anchor_);
    lead_ = moved(lead_);
    setSelection(std::move(shifted));
    setNeedsLayout();
}

void NSTableView::dropViewsFrom(int firstRow, int lastRow)
{
    const auto begin = rowViews_.lower_bound(firstRow);
    const auto end = rowViews_.upper_bound(lastRow);
    for (auto row = begin; row != end; ++row)
        row->second->removeFromSuperview();
    rowViews_.erase(begin, end);
}

void NSTableView::layout()
{
    if (!isLoaded_)
        reloadData();
    showRowsInSight();
}

void NSTableView::visibleRectDidChange()
{
    if (isLoaded_)
        showRowsInSight();
}

void NSTableView::showRowsInSight()
{
    const auto clip = std::dynamic_pointer_cast<NSClipView>(superview());
    const NSRect inSight = clip ? clip->bounds() : bounds();
    const int first = std::max(0, static_cast<int>(std::floor(inSight.minY() / rowHeight())));
    const int last = std::min(rowCount_ - 1, static_cast<int>(std::ceil(inSight.maxY() / rowHeight())) - 1);
    dropViewsFrom(0, first - 1);
    dropViewsFrom(last + 1, rowCount_);
    for (int row = first; row <= last; ++row)
        showRow(row);
}

void NSTableView::showRow(int row)
{
    auto& view = rowViews_[row];
    if (!view) {
        const auto delegate = delegate_.lock();
        view = delegate ? delegate->viewForRow(*this, row) : std::make_shared<NSView>();
        view->setTranslatesAutoresizingMaskIntoConstraints(true);
        addSubview(view);
    }
    const NSRect room = rectOfRow(row);
    view->setFrame({ { room.minX() + kCellInset, room.minY() },
                     { std::max(0.0, room.size.width - 2 * kCellInset), room.size.height } });
    view->layoutIfNeeded();
}

int NSTableView::rowsInPage() const
{
    const auto clip = superview();
    const double height = clip ? clip->bounds().size.height : frame().size.height;
    return std::max(1, static_cast<int>(height / rowHeight()) - 1);
}

// Selection

bool NSTableView::maySelect(int row)
{
    if (row < 0 || row >= rowCount_)
        return false;
    const auto delegate = delegate_.lock();
    return !delegate || delegate->shouldSelectRow(*this, row);
}

void NSTableView::setSelection(std::set<int> rows)
{
    if (rows == selection_)
        return;
    selection_ = std::move(rows);
    setNeedsDisplay();
}

void NSTableView::selectRowIndexes(std::set<int> rows, bool byExtendingSelection)
{
    std::erase_if(rows, [this](int row) { return !maySelect(row); });
    if (!rows.empty())
        anchor_ = lead_ = *rows.rbegin();
    if (byExtendingSelection)
        rows.insert(selection_.begin(), selection_.end());
    setSelection(std::move(rows));
}

void NSTableView::selectFromAnchor(int row)
{
    if (anchor_ < 0 || !allowsMultipleSelection_)
        anchor_ = row;
    std::set<int> rows;
    for (int each = std::min(anchor_, row); each <= std::max(anchor_, row); ++each) {
        if (maySelect(each))
            rows.insert(rows.end(), each);
    }
    lead_ = row;
    setSelection(std::move(rows));
}

void NSTableView::mouseDown(int row, bool extend, bool toggle)
{
    pressedInSelection_.reset();
    if (row < 0) {
        if (!extend && !toggle)
            setSelection({});
        return;
    }
    if (!maySelect(row))
        return;
    if (extend) {
        selectFromAnchor(row);
    } else if (toggle && allowsMultipleSelection_) {
        std::set<int> rows = selection_;
        if (!rows.erase(row))
            rows.insert(row);
        anchor_ = lead_ = row;
        setSelection(std::move(rows));
    } else if (selection_.contains(row)) {
        pressedInSelection_ = row;
    } else {
        selectRowIndexes({ row }, false);
    }
}

void NSTableView::mouseUp()
{
    if (const auto row = std::exchange(pressedInSelection_, std::nullopt))
        selectRowIndexes({ *row }, false);
}

void NSTableView::doubleClick(int row)
{
    if (row >= 0 && doubleAction_)
        NSApplication::shared().sendAction(doubleAction_, target(), shared_from_this());
}

void NSTableView::keyDown(Key key, bool extend)
{
    if (rowCount_ == 0)
        return;
    int row = lead_;
    int step = -1;
    switch (key) {
    case Key::up:
        row = lead_ < 0 ? rowCount_ - 1 : lead_ - 1;
        break;
    case Key::down:
        row = lead_ + 1;
        step = 1;
        break;
    case Key::pageUp:
        row = lead_ - rowsInPage();
        break;
    case Key::pageDown:
        row = lead_ + rowsInPage();
        step = 1;
        break;
    case Key::home:
        row = 0;
        step = 1;
        break;
    case Key::end:
        row = rowCount_ - 1;
        break;
    }
    row = std::clamp(row, 0, rowCount_ - 1);
    // Rows that can't be selected are stepped over; where none is left that way, the nearest one back.
    const int wanted = row;
    while (row >= 0 && row < rowCount_ && !maySelect(row))
        row += step;
    for (row = row < 0 || row >= rowCount_ ? wanted : row; !maySelect(row); row -= step) {
        if (row < 0 || row >= rowCount_)
            return;
    }
    if (extend)
        selectFromAnchor(row);
    else
        selectRowIndexes({ row }, false);
    if (const auto clip = std::dynamic_pointer_cast<NSClipView>(superview()))
        clip->scrollToVisible(rectOfRow(row));
}

void NSTableView::selectAll()
{
    if (!allowsMultipleSelection_)
        return;
    std::set<int> rows;
    for (int row = 0; row < rowCount_; ++row) {
        if (maySelect(row))
            rows.insert(rows.end(), row);
    }
    setSelection(std::move(rows));
}

// Dragging

std::optional<NSPasteboard> NSTableView::beginDragging(int row)
{
    pressedInSelection_.reset();
    draggedRows_.clear();
    const auto source = dataSource_.lock();
    if (!source || row < 0)
        return std::nullopt;
    const std::set<int> rows = selection_.contains(row) ? selection_ : std::set<int> { row };
    std::vector<std::shared_ptr<NSPasteboardWriting>> writers;
    for (const int each : rows) {
        if (auto writer = source->pasteboardWriterForRow(*this, each)) {
            writers.push_back(std::move(writer));
            draggedRows_.push_back(each);
        }
    }
    return writers.empty() ? std::nullopt : std::optional(NSPasteboard(writers));
}

int NSTableView::dropRowAt(NSPoint point) const
{
    // The gap nearest to the pointer: rows are too low to tell dropping on one from dropping beside it.
    const int gap = static_cast<int>(std::floor(point.y / rowHeight() + 0.5));
    return std::clamp(gap, 0, rowCount_);
}

void NSTableView::setDropRow(std::optional<int> row)
{
    if (row == dropRow_)
        return;
    dropRow_ = row;
    setNeedsDisplay();
}

NSDragOperation NSTableView::validate(const NSDraggingInfo& info)
{
    const auto source = dataSource_.lock();
    const int row = dropRowAt(info.draggingLocation);
    const NSDragOperation operation = source
        ? source->validateDrop(*this, info, row, NSTableViewDataSource::DropOperation::above)
        : NSDragOperation::none;
    setDropRow(operation == NSDragOperation::none ? std::nullopt : std::optional(row));
    return operation;
}

NSDragOperation NSTableView::draggingEntered(const NSDraggingInfo& info)
{
    return validate(info);
}

std::optional<NSDragOperation> NSTableView::draggingUpdated(const NSDraggingInfo& info)
{
    return validate(info);
}

void NSTableView::draggingExited()
{
    setDropRow(std::nullopt);
}

bool NSTableView::performDragOperation(const NSDraggingInfo& info)
{
    const auto row = std::exchange(dropRow_, std::nullopt);
    setNeedsDisplay();
    const auto source = dataSource_.lock();
    return row && source && source->acceptDrop(*this, info, *row, NSTableViewDataSource::DropOperation::above);
}

} // namespace quillbox
