#pragma once

#include "NSControl.h"
#include "NSPasteboard.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillbox {

class NSTableView;

class NSTableViewDataSource {
public:
    enum class DropOperation { on = 0, above = 1 };

    virtual ~NSTableViewDataSource() = default;
    virtual int numberOfRows(NSTableView& tableView) = 0;
    // What a drag of the row carries; null for a row that can't be dragged.
    virtual std::shared_ptr<NSPasteboardWriting> pasteboardWriterForRow(NSTableView&, int /*row*/) { return nullptr; }
    // What dropping there would do. `row` is the row that the drop is above of; the number of rows means the end.
    virtual NSDragOperation validateDrop(NSTableView&, const NSDraggingInfo&, int /*row*/, DropOperation)
    {
        return NSDragOperation::none;
    }
    // Whether the drop was taken.
    virtual bool acceptDrop(NSTableView&, const NSDraggingInfo&, int /*row*/, DropOperation) { return false; }
};

class NSTableViewDelegate {
public:
    virtual ~NSTableViewDelegate() = default;
    // The view of a row, made whenever the row comes into sight.
    virtual std::shared_ptr<NSView> viewForRow(NSTableView& tableView, int row) = 0;
    virtual bool shouldSelectRow(NSTableView&, int /*row*/) { return true; }
};

struct NSTableColumn {
    std::string identifier;
    std::string title;
};

// A list of rows of equal height, made of views. Rows have views only while they can be seen: the delegate is
// asked when a row comes into sight, and the view goes when the row leaves it. Rows are numbered from 0. The
// table's one column is as wide as the table.
//
// The person's clicks, keys and drags come in as calls from the display; selection rules are here, what a drop
// means is the data source's.
class NSTableView : public NSControl {
public:
    enum class Animation { none = 0, slideUp = 16, slideDown = 32 };
    enum class SelectionHighlightStyle { regular = 0 };
    enum class Key { up, down, pageUp, pageDown, home, end };

    NSTableView();

    const char* className() const override { return "NSTableView"; }
    NSSize naturalSize(double widthLimit) const override;
    void layout() override;

    // --- Set up

    void setDataSource(std::weak_ptr<NSTableViewDataSource> source) { dataSource_ = std::move(source); }
    void setDelegate(std::weak_ptr<NSTableViewDelegate> delegate) { delegate_ = std::move(delegate); }
    void addTableColumn(NSTableColumn column) { columns_.push_back(std::move(column)); }
    const std::vector<NSTableColumn>& tableColumns() const { return columns_; }
    void setAllowsMultipleSelection(bool allows) { allowsMultipleSelection_ = allows; }
    bool allowsMultipleSelection() const { return allowsMultipleSelection_; }
    void setUsesAlternatingRowBackgroundColors(bool uses) { usesAlternatingRowBackgroundColors_ = uses; }
    bool usesAlternatingRowBackgroundColors() const { return usesAlternatingRowBackgroundColors_; }
    SelectionHighlightStyle selectionHighlightStyle() const { return SelectionHighlightStyle::regular; }
    // Sent after a double click on a row, to the control's target.
    void setDoubleAction(const Selector* action) { doubleAction_ = action; }
    // What other programs may do with a drag from this table.
    void setDraggingSourceOperationMaskOutside(NSDragOperation mask) { operationMaskOutside_ = mask; }
    NSDragOperation draggingSourceOperationMaskOutside() const { return operationMaskOutside_; }

    // --- Rows

    int numberOfRows() const { return rowCount_; }
    double rowHeight() const;
    NSRect rectOfRow(int row) const;
    // -1 where no row is.
    int rowAtPoint(NSPoint point) const;
    // Null for a row out of sight.
    std::shared_ptr<NSView> viewAtRow(int row) const;
    // What the row says, also for one out of sight; for assistive technology. Empty where it has no text.
    std::string textOfRow(int row);
    // The rows that have views, ascending.
    const std::map<int, std::shared_ptr<NSView>>& visibleRowViews() const { return rowViews_; }

    // Asks for the number of rows and all views anew. Selected rows stay selected by their number.
    void reloadData();
    // Only the view of that row is asked for anew.
    void reloadData(int forRow, int column);
    void insertRows(NSRange range, Animation animation);
    void removeRows(const std::set<int>& rows, Animation animation);
    // The row is `to` afterwards; its selection goes with it.
    void moveRow(int at, int to);
    // The frames of all rows anew.
    void tile() { setNeedsLayout(); }

    // --- Selection

    const std::set<int>& selectedRowIndexes() const { return selection_; }
    // Rows that may not be selected are left out.
    void selectRowIndexes(std::set<int> rows, bool byExtendingSelection);
    bool mayBeSelected(int row) { return maySelect(row); }
    // Where the keyboard is; -1 where it is nowhere.
    int leadRow() const { return lead_; }

    // --- What the person does

    // `row` is -1 beside the rows. `extend` is Shift, `toggle` is Ctrl. A press on one of several selected rows
    // keeps them until the button is let go of, since it may begin a drag of them all.
    void mouseDown(int row, bool extend, bool toggle);
    void mouseUp();
    void doubleClick(int row);
    void keyDown(Key key, bool extend);
    void selectAll();
    // The keys that delete.
    virtual void deleteBackward() { }
    // What a drag that begins on that row carries: all selected rows if it is one of them. None where none can
    // be dragged.
    std::optional<NSPasteboard> beginDragging(int row);
    // The rows of the last drag that began here, ascending; for its picture.
    const std::vector<int>& draggedRows() const { return draggedRows_; }

    // --- Drops

    // The row above which the drop line is shown.
    std::optional<int> dropRow() const { return dropRow_; }
    NSDragOperation draggingEntered(const NSDraggingInfo& info) override;
    std::optional<NSDragOperation> draggingUpdated(const NSDraggingInfo& info) override;
    void draggingExited() override;
    bool performDragOperation(const NSDraggingInfo& info) override;

protected:
    void visibleRectDidChange() override;

private:
    NSDragOperation validate(const NSDraggingInfo& info);
    int dropRowAt(NSPoint point) const;
    void setDropRow(std::optional<int> row);
    bool maySelect(int row);
    void setSelection(std::set<int> rows);
    // Shift and the arrow keys: from the row where the selection began to `row`.
    void selectFromAnchor(int row);
    void showRowsInSight();
    void showRow(int row);
    void dropViewsFrom(int firstRow, int lastRow);
    int rowsInPage() const;

    std::weak_ptr<NSTableViewDataSource> dataSource_;
    std::weak_ptr<NSTableViewDelegate> delegate_;
    std::vector<NSTableColumn> columns_;
    bool allowsMultipleSelection_ = false;
    bool usesAlternatingRowBackgroundColors_ = false;
    const Selector* doubleAction_ = nullptr;
    NSDragOperation operationMaskOutside_ = NSDragOperation::none;

    int rowCount_ = 0;
    bool isLoaded_ = false;
    std::map<int, std::shared_ptr<NSView>> rowViews_;
    std::set<int> selection_;
    int anchor_ = -1;
    int lead_ = -1;
    // The press that made the selection one row, put off until the button is let go of.
    std::optional<int> pressedInSelection_;
    std::vector<int> draggedRows_;
    std::optional<int> dropRow_;
};

} // namespace quillbox
