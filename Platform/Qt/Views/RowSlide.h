#pragma once

#include "Clock.h"
#include "NSTableView.h"
#include "ViewPresenter.h"

#include <QPointer>
#include <QWidget>

#include <chrono>
#include <map>
#include <memory>
#include <vector>

namespace quillbox {

// Shows rows of a table sliding to their new places: rows after new ones make room, rows after removed ones close the
// gap, and moved rows pass the others. The model has changed already; only the widgets move. The table's presenter owns
// it.
class RowSlide {
public:
    using Presenters = std::vector<std::unique_ptr<ViewPresenter>>;

    explicit RowSlide(QWidget& table) : table_(table) { }
    ~RowSlide();
    RowSlide(const RowSlide&) = delete;
    RowSlide& operator=(const RowSlide&) = delete;

    // Must be called before the widgets are updated; records where the rows are shown now.
    void rowsWillChange(const Presenters& shown);
    // Must be called when the widgets have been placed. After rowsWillChange() a slide begins, if the desktop wants
    // animations; a running one continues.
    void rowsShown(const NSTableView& table, const Presenters& shown);

private:
    struct Row {
        QPointer<QWidget> widget;
        int from;
        int to;
    };

    void begin(const NSTableView& table, const Presenters& shown);
    void step();
    void place();
    void end();

    QWidget& table_;
    bool isToBegin_ = false;
    std::map<const NSView*, int> before_;
    std::vector<Row> rows_;
    std::chrono::milliseconds began_ {};
    std::chrono::milliseconds duration_ {};
    std::unique_ptr<Clock::Timer> timer_;
};

} // namespace quillbox
