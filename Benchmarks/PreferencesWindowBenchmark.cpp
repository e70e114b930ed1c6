#include "Figures.h"
#include "Surroundings.h"

#include "DragTracking.h"
#include "Installed.h"
#include "MainMenuItem.h"
#include "NSApplication.h"
#include "NSWindow.h"
#include "PreferencesWindowVC.h"
#include "QtApplication.h"
#include "QtClock.h"
#include "QtDesktop.h"
#include "TentativeMenuItemsTable.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <unistd.h>
#include <vector>

// Measures how long a user waits for the preferences window, on a real X server (run by preferences_window_speed): from
// the action to the end of the first paint, compared with an empty window of the same size in the same run; and the
// steps with a list of 2,000 items.

namespace quillbox {

namespace {

    using Milliseconds = std::chrono::duration<double, std::milli>;

    constexpr int kTrials = 15;
    constexpr int kItems = 2000;
    constexpr int kScrolls = 200;
    constexpr int kJumps = 50;
    constexpr int kDrops = 50;

    // Counts the paints of top-level windows. One of them includes everything in the window.
    class PaintWatch final : public QObject {
    public:
        PaintWatch() { qApp->installEventFilter(this); }
        bool eventFilter(QObject* object, QEvent* event) override
        {
            const auto* widget = qobject_cast<QWidget*>(object);
            if (event->type() == QEvent::UpdateRequest && widget && widget->isWindow())
                ++updates;
            return false;
        }

        int updates = 0;
    };

    // Returns the time from the action until a window has been painted again and no paint is pending.
    double timeUntilPainted(PaintWatch& watch, const std::function<void()>& action)
    {
        const int before = watch.updates;
        const auto start = std::chrono::steady_clock::now();
        action();
        while (watch.updates == before)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QApplication::sync();
        const double result = Milliseconds(std::chrono::steady_clock::now() - start).count();
        QApplication::processEvents();
        return result;
    }

    Figures opening(PaintWatch& watch, StatusMenuItemController& controller)
    {
        std::vector<double> times;
        for (int trial = 0; trial < kTrials; ++trial) {
            times.push_back(timeUntilPainted(watch, [&] { controller.openAppPreferencesWindow(nullptr); }));
            PreferencesWindowVC::preferencesWindow().lock()->close();
            QApplication::processEvents();
        }
        return { times };
    }

    Figures openingEmpty(PaintWatch& watch)
    {
        std::vector<double> times;
        for (int trial = 0; trial < kTrials; ++trial) {
            QWidget window;
            window.resize(520, 650);
            times.push_back(timeUntilPainted(watch, [&] {
                window.show();
                window.raise();
                window.activateWindow();
            }));
            window.close();
            QApplication::processEvents();
        }
        return { times };
    }

    TentativeMenuItemsTable& table(NSView& view)
    {
        std::vector<NSView*> waiting { &view };
        while (!waiting.empty()) {
            NSView* const each = waiting.back();
            waiting.pop_back();
            if (auto* found = dynamic_cast<TentativeMenuItemsTable*>(each))
                return *found;
            for (const auto& subview : each->subviews())
                waiting.push_back(subview.get());
        }
        QB_CHECK(false);
        return *static_cast<TentativeMenuItemsTable*>(nullptr);
    }

    void measureLongList(PaintWatch& watch, StatusMenuItemController& controller)
    {
        MainMenuItem::List items { std::make_shared<MainMenuItem>(MenuItemType::fixedAppPreferences) };
        for (int item = 1; item < kItems; ++item)
            items.push_back(std::make_shared<MainMenuItem>(MenuItemType::plaintext, "Item " + std::to_string(item)));
        MainMenuItem::actualMenuItems() = items;
        timeUntilPainted(watch, [&] { controller.openAppPreferencesWindow(nullptr); });
        const auto window = PreferencesWindowVC::preferencesWindow().lock();
        TentativeMenuItemsTable& list = table(*window->contentView());
        const auto clip = std::dynamic_pointer_cast<NSClipView>(list.superview());

        std::vector<double> scrolls;
        std::vector<double> jumps;
        std::vector<double> drops;
        scrolls.reserve(kScrolls);
        for (int step = 0; step < kScrolls; ++step)
            scrolls.push_back(timeUntilPainted(watch, [&] { clip->scroll(clip->bounds().minY() + 37); }));
        jumps.reserve(kJumps);
        for (int step = 0; step < kJumps; ++step)
            jumps.push_back(timeUntilPainted(watch, [&] { clip->scroll(step % 2 ? 0 : 1e9); }));
        for (int step = 0; step < kDrops; ++step) {
            // Three scattered rows are moved to the visible place.
            list.selectRowIndexes({ 3 + step, 900, 1900 - step }, false);
            const auto pasteboard = list.beginDragging(900);
            drops.push_back(timeUntilPainted(watch, [&] {
                const NSApplication::EventScope event;
                DragTracking drag(*pasteboard);
                drag.move(list.shared_from_this(), { 10, clip->bounds().minY() + 60 });
                drag.drop();
                drag.end();
            }));
        }
        std::printf("A list of %d items, a step to the end of its paint (at most 16 ms): ", kItems);
        for (const auto& [name, times] :
             { std::pair("scrolling", &scrolls), std::pair("end to end", &jumps), std::pair("reordering", &drops) })
            std::printf("%s %.1f ms (most %.1f)  ", name, Figures { *times }.median(), Figures { *times }.most());
        std::printf("\n");
        window->close();
    }

    void measure()
    {
        const std::string root =
            std::filesystem::temp_directory_path() / ("quillbox-window-" + std::to_string(getpid()));
        {
            Surroundings surroundings(root);
            QtDesktop desktop(*qApp);
            const Installed<Desktop> installedDesktop(desktop);
            QtClock clock;
            const Installed<Clock> installedClock(clock);
            PaintWatch watch;
            const Figures empty = openingEmpty(watch);
            const Figures window = opening(watch, *surroundings.controller);
            std::printf(
                "Opening the preferences window: %.1f ms (most %.1f); an empty window of its size: %.1f ms (most "
                "%.1f); beyond it: %.1f ms, at most 150\n",
                window.median(), window.most(), empty.median(), empty.most(), window.median() - empty.median());
            measureLongList(watch, *surroundings.controller);
            NSWindow::closeAll();
            QApplication::processEvents();
        }
        std::filesystem::remove_all(root);
    }

} // namespace

} // namespace quillbox

int main(int argc, char** argv)
{
    const quillbox::QtApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    quillbox::measure();
}
