#include "MenuTracking.h"
#include "FakeUser.h"
#include "HeadlessDesktop.h"
#include "NSAlert.h"
#include "NSApplication.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    // Writes down every call, and fills a menu with one row that has a submenu.
    class Recorder : public NSObject, public NSMenuDelegate, public std::enable_shared_from_this<Recorder> {
    public:
        void menuNeedsUpdate(NSMenu& menu) override { note("needsUpdate", menu); }
        void menuWillOpen(NSMenu& menu) override { note("willOpen", menu); }
        void menuDidClose(NSMenu& menu) override { note("didClose", menu); }
        void act(NSMenuItem* sender) { calls += "act " + sender->title() + "; "; }
        std::string calls;

    private:
        void note(const char* call, const NSMenu& menu) { calls += std::string(call) + " " + menu.title() + "; "; }
    };

    const Selector kAct = makeSelector<&Recorder::act>("actWithSender:");

    class Tracking : public testing::Test {
    protected:
        Tracking()
        {
            top->setDelegate(recorder);
            NSMenu& a = fill(*top, "a");
            a.setDelegate({});
            fill(fill(a, "b"), "c");
        }

        // One row "<name>" that opens a menu "<name>", which it returns, and one "<name> file" that acts.
        NSMenu& fill(NSMenu& menu, const std::string& name)
        {
            const auto opening = std::make_shared<NSMenuItem>(name);
            opening->setSubmenu(std::make_shared<NSMenu>(name));
            opening->submenu()->setDelegate(recorder);
            menu.addItem(opening);
            const auto acting = std::make_shared<NSMenuItem>(name + " file", &kAct);
            acting->setTarget(recorder);
            menu.addItem(acting);
            return *opening->submenu();
        }
        HeadlessDesktop desktop;
        std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>();
        std::shared_ptr<NSMenu> top = std::make_shared<NSMenu>("top");
    };

    TEST_F(Tracking, TellsDelegatesInOrder)
    {
        FakeUser person(top);
        person.open().openSubmenu("a").openSubmenu("b");
        EXPECT_EQ(recorder->calls, "needsUpdate top; willOpen top; needsUpdate b; willOpen b; ")
            << "menu \"a\" has no delegate";
        recorder->calls.clear();
        person.close();
        EXPECT_EQ(recorder->calls, "didClose b; didClose top; ");
    }

    TEST_F(Tracking, AnotherSubmenuClosesTheOpenOne)
    {
        FakeUser person(top);
        person.open().openSubmenu("a").openSubmenu("b");
        recorder->calls.clear();
        MenuTracking& tracking = person.tracking();
        EXPECT_TRUE(tracking.openSubmenu(0, top->itemArray()[0]));
        EXPECT_EQ(recorder->calls, "") << "it is open already";
        EXPECT_EQ(tracking.levelCount(), 3U);
        EXPECT_FALSE(tracking.openSubmenu(0, top->itemArray()[1])) << "a row without a submenu";
        EXPECT_FALSE(tracking.openSubmenu(2, top->itemArray()[0])) << "a row of another level";
        EXPECT_EQ(tracking.levelCount(), 3U);
    }

    TEST_F(Tracking, AChoiceClosesFirstThenActs)
    {
        FakeUser person(top);
        person.open().openSubmenu("a");
        recorder->calls.clear();
        person.tracking().onTakeOffScreen = [this] { recorder->calls += "off screen; "; };
        EXPECT_FALSE(person.tracking().choose(person.row("b"))) << "a row without an action";
        person.choose("b file");
        EXPECT_EQ(recorder->calls, "off screen; didClose top; act b file; ");
    }

    TEST_F(Tracking, AnEmptyMenuGivesWayToTheOneInReserve)
    {
        MenuTracking tracking;
        const auto empty = std::make_shared<NSMenu>("empty");
        empty->setDelegate(recorder);
        EXPECT_TRUE(tracking.open(empty, top));
        EXPECT_EQ(tracking.menu(0), top);
        EXPECT_EQ(recorder->calls,
                  "needsUpdate empty; willOpen empty; didClose empty; needsUpdate top; willOpen top; ");
        tracking.closeAll();
        EXPECT_TRUE(tracking.open(top, empty));
        EXPECT_EQ(tracking.menu(0), top);
        tracking.closeAll();
        EXPECT_TRUE(tracking.open(empty)) << "whoever shows it decides";
    }

    TEST_F(Tracking, AnActionWithoutItsTargetIsNotSent)
    {
        FakeUser person(top);
        person.open();
        const auto row = person.row("a file");
        row->setTarget(std::weak_ptr<NSObject>());
        EXPECT_TRUE(person.tracking().choose(row));
        EXPECT_EQ(recorder->calls, "needsUpdate top; willOpen top; didClose top; ");
    }

    TEST(NSMenu, ItemsAndMenusKnowWhereTheyAre)
    {
        const auto menu = std::make_shared<NSMenu>("outer");
        const auto item = std::make_shared<NSMenuItem>("row");
        const auto inner = std::make_shared<NSMenu>("inner");
        item->setSubmenu(inner);
        EXPECT_EQ(inner->supermenu(), nullptr);
        menu->addItem(item);
        EXPECT_EQ(inner->supermenu(), menu.get());
        menu->removeAllItems();
        EXPECT_EQ(inner->supermenu(), nullptr);
        item->setSubmenu(nullptr);
        EXPECT_FALSE(item->isEnabled());
    }

} // namespace

} // namespace quillbox
