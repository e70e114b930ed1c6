// What the user does with a table: selection, keys, dragging and dropping.

#include "NSTableView.h"

#include "NSApplication.h"
#include "NSScrollView.h"

#include <algorithm>
#include <cmath>

namespace quillbox {

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
    if (isHeld())
        return;
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
    if (row >= 0 && doubleAction_ && !isHeld())
        NSApplication::shared().sendAction(doubleAction_, target(), shared_from_this());
}

void NSTableView::keyDown(Key key, bool extend)
{
    if (rowCount_ == 0 || isHeld())
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
    // Rows that can't be selected are skipped. If there is no further one in that direction, the nearest one in the
    // other direction is taken.
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
    scrollRowToVisible(row);
}

void NSTableView::scrollRowToVisible(int row)
{
    scrollRectToVisible(rectOfRow(row));
}

void NSTableView::selectAll()
{
    if (!allowsMultipleSelection_ || isHeld())
        return;
    std::set<int> rows;
    for (int row = 0; row < rowCount_; ++row) {
        if (maySelect(row))
            rows.insert(rows.end(), row);
    }
    setSelection(std::move(rows));
}

void NSTableView::userSelects(int row)
{
    if (!isHeld())
        selectRowIndexes({ row }, false);
}

// Commands

const char* NSTableView::titleOf(Command command)
{
    switch (command) {
    case Command::add:
        return "Add";
    case Command::settings:
        return "Settings";
    case Command::moveUp:
        return "Move up";
    case Command::moveDown:
        return "Move down";
    case Command::remove:
        break;
    }
    return "Remove";
}

bool NSTableView::userPerforms(Command command, std::optional<int> row)
{
    const std::set<int> rows = row && !selection_.contains(*row) ? std::set { *row } : selection_;
    if (isHeld() || std::none_of(rows.begin(), rows.end(), [&](int each) { return canPerform(command, each); }))
        return false;
    perform(command, rows);
    return true;
}

void NSTableView::announce(std::string text)
{
    announcement_ = std::move(text);
    ++announcementCount_;
    setNeedsDisplay();
}

// Dragging

std::optional<NSPasteboard> NSTableView::beginDragging(int row)
{
    pressedInSelection_.reset();
    draggedRows_.clear();
    const auto source = dataSource_.lock();
    if (!source || row < 0 || isHeld())
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
    // A drop goes into the gap nearest to the pointer, because rows are too low to tell a drop on one from a drop
    // beside it.
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
