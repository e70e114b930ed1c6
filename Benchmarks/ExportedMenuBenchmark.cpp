#include "DBusMenuTypes.h"
#include "HeadlessDesktop.h"
#include "ManualClock.h"
#include "MenuExporter.h"
#include "PrivateBus.h"
#include "SessionBus.h"

#include <benchmark/benchmark.h>

#include <QApplication>

// Measures how long a host waits for a level of an exported menu: its calls over a separate bus, answered and decoded.
// Host and menu share one process and one thread, so the figures include the work of both.

namespace quillbox {

namespace {

    const QString kPath = QStringLiteral("/Menu");
    const QString kInterface = QStringLiteral("com.canonical.dbusmenu");
    constexpr int kRows = 200;
    constexpr int kKindsOfFiles = 20;

    const Selector kNothing { "nothing:", [](NSObject&, NSObject*) {} };

    // Fills its menus with rows like those for a directory of files.
    class Directory final : public NSMenuDelegate {
    public:
        Directory()
        {
            for (int kind = 0; kind < kKindsOfFiles; ++kind)
                icons_.emplace_back(
                    std::make_shared<KnownImageSource>(
                        "icon", ThemedImage { { "application-x-kind-" + std::to_string(kind), "text-x-generic" }, {} }),
                    NSSize { 16, 16 });
        }
        void menuNeedsUpdate(NSMenu& menu) override
        {
            menu.removeAllItems();
            for (int row = 0; row < kRows; ++row) {
                auto item = std::make_shared<NSMenuItem>("A file of some kind " + std::to_string(row), &kNothing);
                item->setImage(icons_[static_cast<std::size_t>(row) % icons_.size()]);
                menu.addItem(std::move(item));
            }
        }
        void menuWillOpen(NSMenu&) override { }
        void menuDidClose(NSMenu&) override { }

    private:
        std::vector<NSImage> icons_;
    };

    struct World {
        World()
        {
            const auto item = std::make_shared<NSMenuItem>("Directory");
            const auto submenu = std::make_shared<NSMenu>("Directory");
            submenu->setDelegate(directory);
            item->setSubmenu(submenu);
            menu->addItem(item);
            exporter.fill();
            idOfDirectory = layout(0, 1).children.at(0).id;
        }
        QDBusMessage call(const QString& member, const QVariantList& arguments)
        {
            return host.call(itemBus.connection().baseService(), kPath, kInterface, member, arguments);
        }
        DBusMenuLayout layout(int id, int depth)
        {
            return qdbus_cast<DBusMenuLayout>(call("GetLayout", { id, depth, QStringList() }).arguments().at(1));
        }

        PrivateBus bus;
        HeadlessDesktop desktop;
        ManualClock clock;
        std::shared_ptr<Directory> directory = std::make_shared<Directory>();
        std::shared_ptr<NSMenu> menu = std::make_shared<NSMenu>();
        SessionBus itemBus;
        BusClient host;
        MenuExporter exporter { itemBus.connection(), kPath, menu, nullptr, {} };
        int idOfDirectory = 0;
    };

    void readALevel(benchmark::State& state)
    {
        World world;
        world.call("AboutToShow", { world.idOfDirectory });
        for (auto _ : state)
            if (world.layout(world.idOfDirectory, 1).children.size() != kRows)
                state.SkipWithError("the level is not the one that was to be measured");
    }

    void openAndReadALevel(benchmark::State& state)
    {
        World world;
        for (auto _ : state) {
            world.call("AboutToShow", { world.idOfDirectory });
            if (world.layout(world.idOfDirectory, 1).children.size() != kRows)
                state.SkipWithError("the level is not the one that was to be measured");
        }
    }

} // namespace

} // namespace quillbox

int main(int argc, char** argv)
{
    using namespace quillbox;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    for (const auto& [name, function] :
         { std::pair { "readALevel", &readALevel }, std::pair { "openAndReadALevel", &openAndReadALevel } })
        benchmark::RegisterBenchmark(name, function)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond)
            ->Repetitions(9)
            ->ReportAggregatesOnly();
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
