#include "BigDirectory.h"
#include "RatioReporter.h"
#include "Surroundings.h"

#include "Debug.h"
#include "SlabPool.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <optional>

// Compares the time for building a menu with the least that any program must do for the same directory, and measures
// the menu's memory. Runs are interleaved, each figure is the median of nine, and the report gives ratios of one run.

namespace quillbox {

namespace {

    namespace fs = std::filesystem;
    using SteadyClock = std::chrono::steady_clock;

    constexpr std::size_t kSizes[] = { 100, 1000, 10'000, 100'000 };

    std::string dataRoot;
    std::optional<Surroundings> surroundings;

    ItemList build(const std::string& directory, MenuOptionFlagsSv flags = {})
    {
        return *surroundings->controller->createSubMenuItems(URL::fileURLWithPath(directory), false, flags, {});
    }

    void statxLoop(benchmark::State& state)
    {
        const std::string directory = bigDirectory(dataRoot, static_cast<std::size_t>(state.range(0)));
        for (auto _ : state)
            benchmark::DoNotOptimize(listAndLook(directory));
    }

    void listAndSortLoop(benchmark::State& state)
    {
        const std::string directory = bigDirectory(dataRoot, static_cast<std::size_t>(state.range(0)));
        for (auto _ : state)
            benchmark::DoNotOptimize(listAndSort(directory));
    }

    // Measures the building of the menu's own list, or with `timesRelease` the release of what was built.
    void buildOrRelease(benchmark::State& state, MenuOptionFlagsSv flags, bool timesRelease)
    {
        const std::string directory = bigDirectory(dataRoot, static_cast<std::size_t>(state.range(0)));
        for (auto _ : state) {
            NSMenu menu;
            const auto start = SteadyClock::now();
            menu.setItemArray(build(directory, flags));
            const auto built = SteadyClock::now();
            menu.removeAllItems();
            Debug::pruneDynamicMenuItems();
            const auto released = SteadyClock::now();
            const std::chrono::duration<double> time = timesRelease ? released - built : built - start;
            state.SetIterationTime(time.count());
        }
    }

    void topLevel(benchmark::State& state)
    {
        for (auto _ : state) {
            surroundings->controller->populateTheTopLevelMenu();
            state.PauseTiming();
            surroundings->controller->menuDidClose(*surroundings->controller->statusItem()->menu());
            state.ResumeTiming();
        }
    }

    // Returns the bytes of allocated memory for each entry, beyond the texts of its names and paths.
    double bytesPerEntry(std::size_t count)
    {
        const std::string directory = bigDirectory(dataRoot, count);
        build(directory);
        Debug::pruneDynamicMenuItems();
        malloc_trim(0);
        const auto used = [] {
            const struct mallinfo2 info = mallinfo2();
            return info.uordblks + info.hblkhd + SlabPool::bytesInUse();
        };
        const std::size_t before = used();
        const auto items = build(directory);
        const std::size_t after = used();
        std::size_t text = 0;
        for (const auto& item : items) {
            const auto& plus = static_cast<const NSMenuItemPlus&>(*item);
            text += plus.title().size() + plus.pathToOpen().size();
            if (plus.submenu())
                text += plus.submenu()->title().size() + plus.pathToOpen().size();
        }
        return static_cast<double>(after - before - text) / static_cast<double>(items.size());
    }

    void registerAll()
    {
        for (const std::size_t size : kSizes) {
            const auto argument = static_cast<std::int64_t>(size);
            benchmark::RegisterBenchmark("statxLoop", &statxLoop)->Arg(argument);
            benchmark::RegisterBenchmark("listAndSort", &listAndSortLoop)->Arg(argument);
            benchmark::RegisterBenchmark("build", &buildOrRelease, MenuOptionFlagsSv(), false)
                ->Arg(argument)
                ->UseManualTime();
            benchmark::RegisterBenchmark("buildIgnoringArticles", &buildOrRelease, menuOptionFlagsSv::ignoreArticles,
                                         false)
                ->Arg(argument)
                ->UseManualTime();
            benchmark::RegisterBenchmark("release", &buildOrRelease, MenuOptionFlagsSv(), true)
                ->Arg(argument)
                ->UseManualTime();
        }
        benchmark::RegisterBenchmark("topLevelMenu", &topLevel);
    }

    int report(const RatioReporter& figures)
    {
        std::printf("\n%8s  %12s  %12s  %12s  %12s  %12s\n", "entries", "statx us/e", "build/statx", "build/sort",
                    "articles", "release");
        for (const std::size_t size : kSizes) {
            const std::string suffix = "/" + std::to_string(size);
            const double loop = figures.median("statxLoop" + suffix);
            const double built = figures.median("build" + suffix + "/manual_time");
            std::printf("%8zu  %12.2f  %12.2f  %12.2f  %12.2f  %12.2f\n", size, loop / static_cast<double>(size) * 1e6,
                        built / loop, built / figures.median("listAndSort" + suffix),
                        figures.median("buildIgnoringArticles" + suffix + "/manual_time") / built,
                        figures.median("release" + suffix + "/manual_time") / loop);
        }
        std::printf("\nbuild/statx: building a directory's items over the bare getdents64 and statx loop\n"
                    "build/sort:  the same over listing and sorting alone\n"
                    "articles:    building with articles ignored over building without\n"
                    "release:     letting go of the items over the bare loop\n\n");
        std::printf("memory beyond names and paths: %.0f bytes an entry (100000 entries)\n", bytesPerEntry(100'000));
        std::printf("top-level menu, default list, %d applications, nothing changed: %.2f ms\n",
                    Surroundings::kApplications, figures.median("topLevelMenu") * 1e3);
        return EXIT_SUCCESS;
    }

} // namespace

} // namespace quillbox

int main(int argc, char** argv)
{
    using namespace quillbox;
    // The data lies beside the program on a disk, since a file system in memory is not to be measured.
    dataRoot = (fs::read_symlink("/proc/self/exe").parent_path() / "benchmark-data").string();
    fs::create_directories(dataRoot);
    surroundings.emplace(dataRoot + "/surroundings");

    std::vector<char*> arguments(argv, argv + argc);
    std::string repetitions = "--benchmark_repetitions=9";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, { repetitions.data(), interleaving.data() });
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    registerAll();
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const int result = report(reporter);
    surroundings.reset();
    return result;
}
