#pragma once

#include "MenuTracking.h"

#include <string>
#include <string_view>

namespace quillbox {

// Uses a menu as a person would: opens it, goes into submenus by their titles, chooses rows, closes it. Opening,
// going on and choosing are one event each.
class FakeUser {
public:
    explicit FakeUser(std::shared_ptr<NSMenu> menu) : menu_(std::move(menu)) { }

    FakeUser& open();
    // The row of that title in the deepest open menu; fails the test where there is none.
    FakeUser& openSubmenu(std::string_view title);
    // The menu of what can be done with that row.
    FakeUser& openItemMenu(std::string_view title);
    void choose(std::string_view title, MenuTracking::Choice choice = MenuTracking::Choice::ordinary);
    void close() { tracking_.closeAll(); }
    void closeDeepest() { tracking_.closeToLevelCount(tracking_.levelCount() - 1); }

    // The deepest open menu as text, and its row of that title (null where there is none).
    std::string sees() const;
    std::shared_ptr<NSMenuItem> row(std::string_view title) const;
    MenuTracking& tracking() { return tracking_; }

private:
    const std::shared_ptr<NSMenu>& deepest() const { return tracking_.menu(tracking_.levelCount() - 1); }

    std::shared_ptr<NSMenu> menu_;
    MenuTracking tracking_;
};

} // namespace quillbox
