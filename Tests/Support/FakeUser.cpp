#include "FakeUser.h"

#include "MenuDump.h"
#include "NSApplication.h"

#include <gtest/gtest.h>

namespace quillbox {

FakeUser& FakeUser::open()
{
    const NSApplication::EventScope event;
    EXPECT_TRUE(tracking_.open(menu_));
    return *this;
}

std::shared_ptr<NSMenuItem> FakeUser::row(std::string_view title) const
{
    for (const auto& item : deepest()->itemArray()) {
        if (item->title() == title)
            return item;
    }
    return nullptr;
}

FakeUser& FakeUser::openSubmenu(std::string_view title)
{
    const NSApplication::EventScope event;
    const auto item = row(title);
    EXPECT_TRUE(item) << "no row \"" << title << "\" in\n" << sees();
    if (item) {
        EXPECT_TRUE(tracking_.openSubmenu(tracking_.levelCount() - 1, item)) << title;
    }
    return *this;
}

FakeUser& FakeUser::openItemMenu(std::string_view title)
{
    const NSApplication::EventScope event;
    const auto item = row(title);
    EXPECT_TRUE(item && tracking_.openMenuForItem(tracking_.levelCount() - 1, item)) << title;
    return *this;
}

void FakeUser::choose(std::string_view title, MenuTracking::Choice choice)
{
    const NSApplication::EventScope event;
    const auto item = row(title);
    ASSERT_TRUE(item) << "no row \"" << title << "\" in\n" << sees();
    EXPECT_TRUE(tracking_.choose(item, choice)) << title;
}

std::string FakeUser::sees() const
{
    return tracking_.isOpen() ? menuDump(*deepest()) : "(closed)";
}

} // namespace quillbox
