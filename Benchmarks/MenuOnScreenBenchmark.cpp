#include "BigDirectory.h"
#include "Figures.h"
#include "Surroundings.h"

#include "MainMenuItem.h"
#include "ManualClock.h"
#include "MenuPresenter.h"
#include "PopupUser.h"
#include "QtApplication.h"

#include <xcb/xcb.h>

#include <QApplication>
#include <QStyle>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <unistd.h>
#include <vector>

// Measures what a user waits for in an open menu of large directories, on a real X server (run by menu_on_screen): the
// real application's code with real popups, and hover delays by a clock moved by hand. Painting counts as finished when
// the server has answered a request that was sent after it.

namespace quillbox {

namespace {

    using SteadyClock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::duration<double, std::milli>;

    constexpr std::size_t kSizes[] = { 100, 10'000, 50'000, 100'000 };
    constexpr std::size_t kLargest = 100'000;
    constexpr int kTrials = 15;
    constexpr QRect kIcon { 100, 0, 24, 24 };
    constexpr QPoint kOutside { 900, 700 };

    // Waits until the server has carried out all requests.
    void waitForServer()
    {
        xcb_connection_t* const server = qApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
        std::free(xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    }

    // Measures the time that a menu's delegate takes, by standing between the two.
    class TimedDelegate final : public NSMenuDelegate {
    public:
        explicit TimedDelegate(std::shared_ptr<NSMenuDelegate> delegate) : delegate_(std::move(delegate)) { }
        void menuNeedsUpdate(NSMenu& menu) override
        {
            const auto start = SteadyClock::now();
            delegate_->menuNeedsUpdate(menu);
            building = SteadyClock::now() - start;
        }
        void menuWillOpen(NSMenu& menu) override { delegate_->menuWillOpen(menu); }
        void menuDidClose(NSMenu& menu) override { delegate_->menuDidClose(menu); }

        Milliseconds building {};

    private:
        std::shared_ptr<NSMenuDelegate> delegate_;
    };

    // Counts what popups paint.
    class Paints final : public QObject {
    public:
        Paints() { qApp->installEventFilter(this); }
        // Returns the milliseconds from `act` until some popup has been painted on the screen.
        double timeOf(const std::function<void()>& act)
        {
            const int before = count_;
            const auto start = SteadyClock::now();
            act();
            while (count_ == before) {
                QCoreApplication::processEvents();
                if (SteadyClock::now() - start > std::chrono::seconds(10)) {
                    std::fputs("nothing was painted\n", stderr);
                    std::exit(EXIT_FAILURE);
                }
            }
            waitForServer();
            return Milliseconds(SteadyClock::now() - start).count();
        }

    protected:
        bool eventFilter(QObject* object, QEvent* event) override
        {
            count_ += event->type() == QEvent::Paint && dynamic_cast<MenuPopup*>(object);
            return false;
        }

    private:
        int count_ = 0;
    };

    std::string titleOf(std::size_t size)
    {
        return std::to_string(size) + " entries";
    }

    class OpenMenu {
    public:
        explicit OpenMenu(const std::string& root) : surroundings_(root + "/surroundings")
        {
            MainMenuItem::List list;
            for (const std::size_t size : kSizes) {
                const std::string path = bigDirectory(root, size);
                list.push_back(std::make_shared<MainMenuItem>(MenuItemType::arbitraryPath, titleOf(size), path,
                                                              URL::fileURLWithPath(path)));
            }
            MainMenuItem::actualMenuItems() = list;
            presenter_.onClosed = [this] {
                waitForServer();
                offScreen_ = SteadyClock::now();
            };
        }
        ~OpenMenu() { MainMenuItem::actualMenuItems().clear(); }

        struct Opening {
            double building = 0;
            double painted = 0;
        };
        // Opens the menu and, by resting on its row, a directory.
        Opening open(std::size_t size)
        {
            const std::shared_ptr<NSMenu> menu = surroundings_.controller->statusItem()->menu();
            paints_.timeOf([&] { presenter_.popUp(menu, kIcon, nullptr); });
            const auto& rows = menu->itemArray();
            const auto row = std::find_if(rows.begin(), rows.end(),
                                          [&](const auto& item) { return item->title() == titleOf(size); });
            NSMenu& submenu = *(*row)->submenu();
            delegate_ = std::make_shared<TimedDelegate>(submenu.delegate());
            submenu.setDelegate(delegate_);
            QWidget& popup = *PopupUser::popups().front();
            PopupUser::moveTo(titleOf(size));
            const int delay = popup.style()->styleHint(QStyle::SH_Menu_SubMenuPopupDelay, nullptr, &popup);
            clock_.advance(std::chrono::milliseconds(delay - 1));
            QCoreApplication::processEvents();
            waitForServer();
            const double painted = paints_.timeOf([this] { clock_.advance(std::chrono::milliseconds(1)); });
            return { delegate_->building.count(), painted };
        }

        struct Closing {
            double offScreen = 0;
            double ended = 0;
        };
        Closing close()
        {
            const auto start = SteadyClock::now();
            PopupUser::press(kOutside);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
            const auto ended = SteadyClock::now();
            return { Milliseconds(offScreen_ - start).count(), Milliseconds(ended - start).count() };
        }

        double timeOf(const std::function<void()>& input) { return paints_.timeOf(input); }
        // Waits long enough for typing to begin a new name.
        void rest() { clock_.advance(std::chrono::seconds(3)); }

    private:
        Surroundings surroundings_;
        ManualClock clock_;
        Paints paints_;
        std::shared_ptr<TimedDelegate> delegate_;
        SteadyClock::time_point offScreen_;
        MenuPresenter presenter_;
    };

    void measureFirstPaint(OpenMenu& menu)
    {
        struct Opened {
            Figures building, painted, beyond;
        };
        std::map<std::size_t, Opened> figures;
        for (int trial = 0; trial < kTrials; ++trial) {
            for (const std::size_t size : kSizes) {
                const OpenMenu::Opening opening = menu.open(size);
                menu.close();
                Opened& opened = figures[size];
                opened.building.all.push_back(opening.building);
                opened.painted.all.push_back(opening.painted);
                opened.beyond.all.push_back(opening.painted - opening.building);
            }
        }
        std::printf("First paint of a submenu, ms from the end of the hover delay, median of %d (least)\n", kTrials);
        std::printf("%10s  %18s  %18s  %18s\n", "entries", "building", "first paint", "beyond building");
        for (const auto& [size, opened] : figures) {
            std::printf("%10zu", size);
            for (const Figures* column : { &opened.building, &opened.painted, &opened.beyond })
                std::printf("  %9.2f (%6.2f)", column->median(), column->least());
            std::printf("\n");
        }
        std::printf("%10s  %18s  %18s  %9.2f\n\n", "at most", "", "", 5.0);
    }

    void measureInput(OpenMenu& menu)
    {
        menu.open(kLargest);
        menu.timeOf([] { PopupUser::key(Qt::Key_Right); });
        const QPoint middle = PopupUser::popups().back()->geometry().center();
        const std::pair<const char*, std::function<void(int)>> inputs[] = {
            { "Down", [](int) { PopupUser::key(Qt::Key_Down); } },
            { "Page Down", [](int) { PopupUser::key(Qt::Key_PageDown); } },
            { "End, Home", [](int trial) { PopupUser::key(trial % 2 == 0 ? Qt::Key_End : Qt::Key_Home); } },
            { "wheel step", [middle](int) { PopupUser::wheel(middle, -1); } },
            { "a letter", [](int trial) { PopupUser::type(trial % 2 == 0 ? "t" : "c"); } },
        };
        std::printf("Input to repaint, %zu rows, ms, median of %d (most); at most 8\n", kLargest, kTrials);
        for (const auto& [name, input] : inputs) {
            Figures figures;
            for (int trial = 0; trial < kTrials; ++trial) {
                figures.all.push_back(menu.timeOf([&, &send = input] { send(trial); }));
                menu.rest();
            }
            std::printf("%12s  %6.2f (%6.2f)\n", name, figures.median(), figures.most());
        }
        menu.close();
        std::printf("\n");
    }

    double residentMegabytes()
    {
        std::size_t total = 0;
        std::size_t resident = 0;
        std::ifstream("/proc/self/statm") >> total >> resident;
        return static_cast<double>(resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE))) / (1 << 20);
    }

    void measureClosing(OpenMenu& menu)
    {
        menu.open(kSizes[0]);
        menu.close();
        const double before = residentMegabytes();
        menu.open(kLargest);
        const double open = residentMegabytes();
        menu.close();
        const double warm = residentMegabytes();
        Figures offScreen, ended, resident;
        for (int trial = 0; trial < kTrials; ++trial) {
            menu.open(kLargest);
            const OpenMenu::Closing closing = menu.close();
            resident.all.push_back(residentMegabytes());
            offScreen.all.push_back(closing.offScreen);
            ended.all.push_back(closing.ended);
        }
        std::printf("Closing %zu rows, median of %d (most)\n", kLargest, kTrials);
        std::printf("  off the screen   %6.2f ms (%6.2f); at most 16\n", offScreen.median(), offScreen.most());
        std::printf("  memory is back   %6.2f ms (%6.2f); at most 150\n", ended.median(), ended.most());
        std::printf("  resident then    %6.1f MiB (%5.1f); at most %.1f, a tenth more than after the first\n",
                    resident.median(), resident.most(), warm * 1.1);
        std::printf("                   %6.1f MiB before, %.1f while it is open\n", before, open);
    }

} // namespace

} // namespace quillbox

int main(int argc, char** argv)
{
    using namespace quillbox;
    const quillbox::QtApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (QGuiApplication::platformName() != QStringLiteral("xcb")) {
        std::fputs("this needs an X server, as menu_on_screen starts one\n", stderr);
        return EXIT_FAILURE;
    }
    // The data lies beside the program, which is on a disk.
    const auto root = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "benchmark-data";
    std::filesystem::create_directories(root);
    OpenMenu menu(root.string());
    measureClosing(menu);
    measureFirstPaint(menu);
    measureInput(menu);
    return EXIT_SUCCESS;
}
