#include "RowSlide.h"

#include "Animations.h"

#include <QEasingCurve>

#include <algorithm>

namespace quillbox {

namespace {
    constexpr std::chrono::milliseconds kFrame(16);
} // namespace

RowSlide::~RowSlide() = default;

void RowSlide::rowsWillChange(const Presenters& shown)
{
    isToBegin_ = table_.isVisible() && animationDuration(table_).count() > 0;
    before_.clear();
    for (const auto& presenter : shown) {
        if (const auto view = presenter->view(); view && presenter->widget())
            before_.emplace(view.get(), presenter->widget()->y());
    }
}

void RowSlide::rowsShown(const NSTableView& table, const Presenters& shown)
{
    for (Row& row : rows_) {
        // The widget has just been put in its final place.
        if (row.widget)
            row.to = row.widget->y();
    }
    if (std::exchange(isToBegin_, false))
        begin(table, shown);
    else if (timer_)
        place();
}

void RowSlide::begin(const NSTableView& table, const Presenters& shown)
{
    end();
    std::map<int, QWidget*> widgets;
    std::map<int, int> offsets;
    for (const auto& [row, view] : table.visibleRowViews()) {
        const auto presenter =
            std::find_if(shown.begin(), shown.end(), [&view = view](const auto& each) { return each->view() == view; });
        if (presenter == shown.end())
            continue;
        widgets.emplace(row, (*presenter)->widget());
        if (const auto known = before_.find(view.get()); known != before_.end())
            offsets.emplace(row, known->second - (*presenter)->widget()->y());
    }
    const int height = static_cast<int>(table.rowHeight());
    for (const auto& [row, widget] : widgets) {
        int offset = 0;
        if (const auto own = offsets.find(row); own != offsets.end()) {
            offset = own->second;
        } else if (const auto below = offsets.upper_bound(row); below != offsets.end() && below->second != 0) {
            // A new row moves with those that make room for it, and a row that comes into view moves with its
            // neighbours.
            offset = below->second;
        } else if (const auto above = offsets.lower_bound(row); above != offsets.begin()) {
            // At the end of the list, a new row comes out from under the row above.
            offset = std::prev(above)->second != 0 ? std::prev(above)->second : -height;
        }
        rows_.push_back({ widget, widget->y() + offset, widget->y() });
        // Rows that pass each other cover each other; new rows come out from under those that stay.
        widget->setAutoFillBackground(true);
        if (!offsets.contains(row))
            widget->lower();
        else if (table.selectedRowIndexes().contains(row))
            widget->raise();
    }
    if (std::all_of(rows_.begin(), rows_.end(), [](const Row& row) { return row.from == row.to; })) {
        end();
        return;
    }
    began_ = Clock::current().uptime();
    duration_ = animationDuration(table_);
    step();
}

void RowSlide::step()
{
    if (Clock::current().uptime() - began_ >= duration_) {
        end();
        return;
    }
    place();
    timer_ = Clock::current().after(kFrame, [this] { step(); });
}

void RowSlide::place()
{
    const double passed = std::chrono::duration<double>(Clock::current().uptime() - began_) / duration_;
    const double way = QEasingCurve(QEasingCurve::OutCubic).valueForProgress(std::min(1.0, passed));
    for (const Row& row : rows_) {
        if (row.widget)
            row.widget->move(row.widget->x(), row.from + static_cast<int>((row.to - row.from) * way));
    }
    table_.update();
}

void RowSlide::end()
{
    timer_.reset();
    for (const Row& row : std::exchange(rows_, {})) {
        if (!row.widget)
            continue;
        row.widget->move(row.widget->x(), row.to);
        row.widget->setAutoFillBackground(false);
    }
    table_.update();
}

} // namespace quillbox
