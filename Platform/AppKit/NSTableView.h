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
    // Returns what a drag of the row carries; null for a row that can't be dragged.
    virtual std::shared_ptr<NSPasteboardWriting> pasteboardWriterForRow(NSTableView&, int /*row*/) { return nullptr; }
    // Returns what a drop there would do. The drop is above `row`; the number of rows stands for the end.
    virtual NSDragOperation validateDrop(NSTableView&, const NSDraggingInfo&, int /*row*/, DropOperation)
    {
        return NSDragOperation::none;
    }
    // Performs the drop above `row`. Returns whether it was accepted.
    virtual bool acceptDrop(NSTableView&, const NSDraggingInfo&, int /*row*/, DropOperation) { return false; }
};

class NSTableViewDelegate {
public:
    virtual ~NSTableViewDelegate() = default;
    // Returns the view of a row. It is called whenever the row comes into sight.
    virtual std::shared_ptr<NSView> viewForRow(NSTableView& tableView, int row) = 0;
    // A row in sight has a new number and keeps its view.
    virtual void rowViewDidMove(NSTableView&, NSView& /*view*/, int /*row*/) { }
    virtual bool shouldSelectRow(NSTableView&, int /*row*/) { return true; }
};

struct NSTableColumn {
    std::string identifier;
    std::string title;
};

// A list of rows of equal height, made of views. A row has a view only while it can be seen: the delegate is asked for
// it when the row comes into sight, and it is dropped when the row leaves. A row that gets another number keeps its
// view, its selection and the keyboard focus. Rows are numbered from 0. The table's one column is as wide as the table.
//
// The user's clicks, keys and drags come in as calls from the display. The rules of selection are here; what a drop
// means is decided by the data source.
class NSTableView : public NSControl {
public:
    enum class Animation { none = 0, gap = 8, slideUp = 16, slideDown = 32 };
    enum class Key { up, down, pageUp, pageDown, home, end };
    // What can be done with rows besides selecting and dragging them: by a key, or through assistive technology, which
    // offers it under the command's title.
    enum class Command { add, settings, moveUp, moveDown, remove };
    static constexpr Command kCommands[] = { Command::add, Command::settings, Command::moveUp, Command::moveDown,
                                             Command::remove };
    static const char* titleOf(Command command);

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
    // The action is sent after a double click on a row, to the control's target.
    void setDoubleAction(const Selector* action) { doubleAction_ = action; }
    // What other programs may do with a drag from this table.
    void setDraggingSourceOperationMaskOutside(NSDragOperation mask) { operationMaskOutside_ = mask; }
    NSDragOperation draggingSourceOperationMaskOutside() const { return operationMaskOutside_; }

    // --- Rows

    int numberOfRows() const { return rowCount_; }
    double rowHeight() const;
    NSRect rectOfRow(int row) const;
    // Returns -1 if there is no row.
    int rowAtPoint(NSPoint point) const;
    // Returns null for a row out of sight.
    std::shared_ptr<NSView> viewAtRow(int row) const;
    // Makes a view like that of viewAtRow(), with its frame, for the caller alone. Pictures of rows out of sight are
    // made from it.
    std::shared_ptr<NSView> makeRowView(int row);
    // Returns the text in the row, which may be out of sight, for assistive technology. Empty if the row has no text.
    std::string textOfRow(int row);
    // The rows that have views, in ascending order.
    const std::map<int, std::shared_ptr<NSView>>& visibleRowViews() const { return rowViews_; }

    // Asks the data source and the delegate for the number of rows and all views again. Selected rows stay selected by
    // their number.
    void reloadData();
    // Asks again for the view of that row only. If a control of the row has the keyboard focus, the control in its
    // place gets it.
    void reloadData(int forRow);
    // Adds, removes and moves rows, all at once. Row i becomes row `newRows[i]`, or is removed if that is -1. Numbers
    // below `count` that no row gets belong to new rows.
    void rearrangeRows(const std::vector<int>& newRows, int count, Animation animation);
    // Counts the changes of rows that should be shown as sliding; the display compares it.
    unsigned slideCount() const { return slideCount_; }
    // Lays out all rows again.
    void tile() { setNeedsLayout(); }

    // --- Selection

    const std::set<int>& selectedRowIndexes() const { return selection_; }
    // Leaves out rows that may not be selected.
    void selectRowIndexes(std::set<int> rows, bool byExtendingSelection);
    void scrollRowToVisible(int row);
    bool mayBeSelected(int row) { return maySelect(row); }
    // The row with the keyboard focus, or -1.
    int leadRow() const { return lead_; }

    // --- What the person does

    // `row` is -1 for a press beside the rows. `extend` says that Shift is held, `toggle` that Ctrl is. A press on one
    // of several selected rows keeps them all selected until the button is released, since it may begin a drag of them
    // all.
    void mouseDown(int row, bool extend, bool toggle);
    void mouseUp();
    void doubleClick(int row);
    void keyDown(Key key, bool extend);
    void selectAll();
    // Assistive technology selects this row only.
    void userSelects(int row);
    // Performs the command with the selected rows, or with a row that assistive technology names; if that row is
    // selected, with all selected rows. Returns false if it can't be done.
    bool userPerforms(Command command, std::optional<int> row = {});
    virtual bool canPerform(Command, int /*row*/) const { return false; }
    // Pastes the files on the clipboard.
    virtual void paste(const NSPasteboard&) { }
    // What was done last, and how many times something was, for assistive technology to announce.
    const std::string& announcement() const { return announcement_; }
    unsigned announcementCount() const { return announcementCount_; }
    // Begins a drag on that row and returns what it carries: all selected rows if the row is one of them. Nothing if no
    // row can be dragged.
    std::optional<NSPasteboard> beginDragging(int row);
    // The rows of the last drag that began here, in ascending order; its picture is made from them.
    const std::vector<int>& draggedRows() const { return draggedRows_; }

    // --- Drops

    // The row above which the drop line is shown.
    std::optional<int> dropRow() const { return dropRow_; }
    NSDragOperation draggingEntered(const NSDraggingInfo& info) override;
    std::optional<NSDragOperation> draggingUpdated(const NSDraggingInfo& info) override;
    void draggingExited() override;
    bool performDragOperation(const NSDraggingInfo& info) override;

protected:
    // From the table's left and right edges to its rows' views, in points.
    static constexpr double kCellInset = 4;

    void visibleRectDidChange() override;
    // Performs the command. It is possible with at least one of `rows`.
    virtual void perform(Command, const std::set<int>& /*rows*/) { }
    void announce(std::string text);

private:
    NSDragOperation validate(const NSDraggingInfo& info);
    int dropRowAt(NSPoint point) const;
    void setDropRow(std::optional<int> row);
    bool maySelect(int row);
    void setSelection(std::set<int> rows);
    // Selects from the row where the selection began to `row`, as Shift with the arrow keys does.
    void selectFromAnchor(int row);
    void showRowsInSight();
    void showRow(int row);
    void placeRowView(NSView& view, int row) const;
    // Takes the view out of the table. If the keyboard focus is in it, the table gets it.
    void dropView(const std::shared_ptr<NSView>& view);
    void dropViewsOutside(int firstRow, int lastRow);
    // Returns where the keyboard focus is below `view`, as the index of a subview, the index of a subview in that one,
    // and so on. Nothing if it is elsewhere.
    std::optional<std::vector<std::size_t>> keyboardPath(const NSView& view) const;
    void handKeyboardOn(NSView& rowView);
    int rowsInPage() const;

    std::weak_ptr<NSTableViewDataSource> dataSource_;
    std::weak_ptr<NSTableViewDelegate> delegate_;
    std::vector<NSTableColumn> columns_;
    bool allowsMultipleSelection_ = false;
    const Selector* doubleAction_ = nullptr;
    NSDragOperation operationMaskOutside_ = NSDragOperation::none;

    int rowCount_ = 0;
    bool isLoaded_ = false;
    std::map<int, std::shared_ptr<NSView>> rowViews_;
    std::set<int> selection_;
    int anchor_ = -1;
    int lead_ = -1;
    // A pressed row that becomes the only selected one when the button is released.
    std::optional<int> pressedInSelection_;
    std::vector<int> draggedRows_;
    std::optional<int> dropRow_;
    unsigned slideCount_ = 0;
    std::string announcement_;
    unsigned announcementCount_ = 0;
    // The row whose view is being made again, and where in it the keyboard focus was.
    int reloadedRow_ = -1;
    std::vector<std::size_t> reloadedPath_;
};

} // namespace quillbox
