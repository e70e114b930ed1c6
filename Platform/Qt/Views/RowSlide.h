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

// Lets the rows of a table be seen going where they belong: those after new rows make room downwards, those after
// removed ones close up, and moved rows go past the others. The model is there at once; only the widgets are on their
// way. Owned by the table's presenter.
class RowSlide {
public:
    using Presenters = std::vector<std::unique_ptr<ViewPresenter>>;

    explicit RowSlide(QWidget& table) : table_(table) { }
    ~RowSlide();
    RowSlide(const RowSlide&) = delete;
    RowSlide& operator=(const RowSlide&) = delete;

    // Before the widgets are made what the views are: where the rows are seen now.
    void rowsWillChange(const Presenters& shown);
    // The widgets have their places. After rowsWillChange() a slide begins, if the desktop animates; one that runs goes
    // on.
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
