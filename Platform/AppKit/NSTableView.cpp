#include "NSTableView.h"

#include "Desktop.h"
#include "NSApplication.h"
#include "NSScrollView.h"
#include "NSTextField.h"
#include "NSWindow.h"
#include "WindowDisplay.h"

#include <algorithm>
#include <cmath>

namespace quillbox {

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
            return field->accessibilityLabel().empty() ? field->stringValue() : field->accessibilityLabel();
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
    dropViewsOutside(0, -1);
    std::set<int> kept;
    std::copy_if(selection_.begin(), selection_.end(), std::inserter(kept, kept.end()),
                 [this](int row) { return row < rowCount_; });
    setSelection(std::move(kept));
    lead_ = std::min(lead_, rowCount_ - 1);
    anchor_ = std::min(anchor_, rowCount_ - 1);
    naturalSizeDidChange();
    setNeedsLayout();
}

void NSTableView::reloadData(int forRow)
{
    const auto known = rowViews_.find(forRow);
    if (known == rowViews_.end())
        return;
    const std::shared_ptr<NSView> view = known->second;
    if (auto path = keyboardPath(*view)) {
        reloadedRow_ = forRow;
        reloadedPath_ = std::move(*path);
    }
    rowViews_.erase(known);
    dropView(view);
    setNeedsLayout();
}

void NSTableView::rearrangeRows(const std::vector<int>& newRows, int count, Animation animation)
{
    // Before the first layout nothing is known of the rows; all of them will be asked for.
    if (!isLoaded_)
        return;
    QB_CHECK(newRows.size() == static_cast<std::size_t>(rowCount_));
    const auto newRow = [&](int row) { return row < 0 ? -1 : newRows[static_cast<std::size_t>(row)]; };
    const auto delegate = delegate_.lock();
    for (const auto& [row, view] : std::exchange(rowViews_, {})) {
        const int now = newRow(row);
        if (now < 0)
            dropView(view);
        else
            rowViews_.emplace(now, view);
        if (now >= 0 && now != row && delegate)
            delegate->rowViewDidMove(*this, *view, now);
    }
    std::set<int> selection;
    for (const int row : selection_) {
        if (newRow(row) >= 0)
            selection.insert(newRow(row));
    }
    // If the row with the keyboard focus is gone, the focus goes to the next row that stayed, which has moved up into
    // its place.
    const auto newRowFrom = [&](int row) {
        while (row >= 0 && row < rowCount_ && newRow(row) < 0)
            ++row;
        return row < rowCount_ ? newRow(row) : count - 1;
    };
    lead_ = newRowFrom(lead_);
    anchor_ = newRowFrom(anchor_);
    reloadedRow_ = newRow(reloadedRow_);
    rowCount_ = count;
    if (animation != Animation::none)
        ++slideCount_;
    setSelection(std::move(selection));
    naturalSizeDidChange();
    setNeedsLayout();
}

std::optional<std::vector<std::size_t>> NSTableView::keyboardPath(const NSView& view) const
{
    const auto shownIn = window();
    std::vector<std::size_t> path;
    auto at = shownIn ? shownIn->firstResponder() : nullptr;
    while (at && at.get() != &view) {
        const auto above = at->superview();
        if (above) {
            const auto& siblings = above->subviews();
            path.insert(path.begin(),
                        static_cast<std::size_t>(std::find(siblings.begin(), siblings.end(), at) - siblings.begin()));
        }
        at = above;
    }
    return at ? std::optional(std::move(path)) : std::nullopt;
}

void NSTableView::handKeyboardOn(NSView& rowView)
{
    const auto shownIn = window();
    if (!shownIn || shownIn->firstResponder().get() != this)
        return;
    auto to = rowView.shared_from_this();
    for (const std::size_t index : reloadedPath_) {
        if (index >= to->subviews().size())
            return;
        to = to->subviews()[index];
    }
    shownIn->makeFirstResponder(to);
}

void NSTableView::dropView(const std::shared_ptr<NSView>& view)
{
    if (keyboardPath(*view))
        window()->makeFirstResponder(shared_from_this());
    view->removeFromSuperview();
}

void NSTableView::dropViewsOutside(int firstRow, int lastRow)
{
    for (auto known = rowViews_.begin(); known != rowViews_.end();) {
        if (known->first >= firstRow && known->first <= lastRow) {
            ++known;
            continue;
        }
        dropView(known->second);
        known = rowViews_.erase(known);
    }
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
    dropViewsOutside(first, last);
    for (int row = first; row <= last; ++row)
        showRow(row);
}

std::shared_ptr<NSView> NSTableView::makeRowView(int row)
{
    const auto delegate = delegate_.lock();
    auto view = delegate ? delegate->viewForRow(*this, row) : std::make_shared<NSView>();
    view->setTranslatesAutoresizingMaskIntoConstraints(true);
    placeRowView(*view, row);
    return view;
}

void NSTableView::placeRowView(NSView& view, int row) const
{
    const NSRect room = rectOfRow(row);
    view.setFrame({ { room.minX() + kCellInset, room.minY() },
                    { std::max(0.0, room.size.width - 2 * kCellInset), room.size.height } });
    view.layoutIfNeeded();
}

void NSTableView::showRow(int row)
{
    auto& view = rowViews_[row];
    if (view) {
        placeRowView(*view, row);
        return;
    }
    view = makeRowView(row);
    addSubview(view);
    view->layoutIfNeeded();
    if (row == reloadedRow_) {
        reloadedRow_ = -1;
        handKeyboardOn(*view);
    }
}

int NSTableView::rowsInPage() const
{
    const auto clip = superview();
    const double height = clip ? clip->bounds().size.height : frame().size.height;
    return std::max(1, static_cast<int>(height / rowHeight()) - 1);
}

} // namespace quillbox
