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
    // A row in sight has another number now and keeps its view.
    virtual void rowViewDidMove(NSTableView&, NSView& /*view*/, int /*row*/) { }
    virtual bool shouldSelectRow(NSTableView&, int /*row*/) { return true; }
};

struct NSTableColumn {
    std::string identifier;
    std::string title;
};

// A list of rows of equal height, made of views. Rows have views only while they can be seen: the delegate is
// asked when a row comes into sight, and the view goes when the row leaves it. A row that gets another number keeps
// its view, its selection and the keyboard. Rows are numbered from 0. The table's one column is as wide as the table.
//
// The person's clicks, keys and drags come in as calls from the display; selection rules are here, what a drop
// means is the data source's.
class NSTableView : public NSControl {
public:
    enum class Animation { none = 0, gap = 8, slideUp = 16, slideDown = 32 };
    enum class Key { up, down, pageUp, pageDown, home, end };
    // What can be done with rows besides selecting and dragging them: by a key, and by assistive technology under the
    // command's title.
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
    // A view as viewAtRow() gives, with its frame, made for the caller; for the picture of a row out of sight.
    std::shared_ptr<NSView> makeRowView(int row);
    // What the row says, also for one out of sight; for assistive technology. Empty where it has no text.
    std::string textOfRow(int row);
    // The rows that have views, ascending.
    const std::map<int, std::shared_ptr<NSView>>& visibleRowViews() const { return rowViews_; }

    // Asks for the number of rows and all views anew. Selected rows stay selected by their number.
    void reloadData();
    // Only the view of that row is asked for anew. A control of the row that has the keyboard hands it on to the one
    // in its place.
    void reloadData(int forRow);
    // Rows come, go and change places, all at once: what was row i is row `newRows[i]` afterwards, or gone if that is
    // -1. Numbers below `count` that no row gets are those of new rows.
    void rearrangeRows(const std::vector<int>& newRows, int count, Animation animation);
    // Counts the changes of rows that are to be seen sliding, for the display.
    unsigned slideCount() const { return slideCount_; }
    // The frames of all rows anew.
    void tile() { setNeedsLayout(); }

    // --- Selection

    const std::set<int>& selectedRowIndexes() const { return selection_; }
    // Rows that may not be selected are left out.
    void selectRowIndexes(std::set<int> rows, bool byExtendingSelection);
    void scrollRowToVisible(int row);
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
    // Assistive technology selects the row alone.
    void userSelects(int row);
    // With the selected rows, or with the row that assistive technology names: if that is one of the selected rows,
    // with them all. False where it can't be done.
    bool userPerforms(Command command, std::optional<int> row = {});
    virtual bool canPerform(Command, int /*row*/) const { return false; }
    // The files on the clipboard.
    virtual void paste(const NSPasteboard&) { }
    // What was done last, for assistive technology, and how often something was.
    const std::string& announcement() const { return announcement_; }
    unsigned announcementCount() const { return announcementCount_; }
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
    // From the table's left and right edges to its rows' views, in points.
    static constexpr double kCellInset = 4;

    void visibleRectDidChange() override;
    // `rows` has at least one with which it can be done.
    virtual void perform(Command, const std::set<int>& /*rows*/) { }
    void announce(std::string text);

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
    void placeRowView(NSView& view, int row) const;
    // Takes the view out of the table; a keyboard that is on it goes to the table.
    void dropView(const std::shared_ptr<NSView>& view);
    void dropViewsOutside(int firstRow, int lastRow);
    // Where the keyboard is below `view`: which subview, which subview of that one, and so on. None if it is elsewhere.
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
    // The press that made the selection one row, put off until the button is let go of.
    std::optional<int> pressedInSelection_;
    std::vector<int> draggedRows_;
    std::optional<int> dropRow_;
    unsigned slideCount_ = 0;
    std::string announcement_;
    unsigned announcementCount_ = 0;
    // The row whose view is to be made anew, and where in it the keyboard was.
    int reloadedRow_ = -1;
    std::vector<std::size_t> reloadedPath_;
};

} // namespace quillbox
