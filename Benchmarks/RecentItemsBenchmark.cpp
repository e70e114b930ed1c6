#include "RatioReporter.h"

#include "ApplicationBundles.h"
#include "FakeUser.h"
#include "HeadlessDesktop.h"
#include "Installed.h"
#include "LinuxWorkspace.h"
#include "ManageDefaults.h"
#include "RecentUseIndex.h"
#include "StatusMenuItemController.h"
#include "TemporaryDirectory.h"
#include "UserDefaults.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

// Measures how long a menu of recent items takes to open with 5,000 recorded documents, from the moment that the user
// points at it until its rows are there: for the first time in a process, which reads the records, and again with
// nothing changed.

namespace quillbox {

namespace {

    namespace fs = std::filesystem;
    using SteadyClock = std::chrono::steady_clock;

    constexpr int kDocuments = 5000;
    constexpr int kApplications = 200;
    constexpr std::int64_t kLimit = 10;
    // Of this many newest documents, every fifth exists; these are shown. None of the older ones is looked for.
    constexpr int kNewest = 50;
    constexpr int kUsedApplications = 3;

    std::string minutesAgo(int minutes)
    {
        std::string text = Date::now().addingSeconds(-60.0 * minutes).description().substr(0, 19);
        text[10] = 'T';
        return text + ".123456Z";
    }

    // A home directory whose records lie where those of a desktop do. With Plasma, its record has the documents too.
    class Home {
    public:
        explicit Home(bool hasPlasma)
        {
            for (int number = 0; number < kApplications; ++number) {
                const std::string name = std::to_string(number);
                files_.writeFile("data/applications/org.example.App" + name + ".desktop",
                                 "[Desktop Entry]\nType=Application\nName=Application " + name + "\nExec=true\n");
            }
            environment.dataHome = files_.path("home");
            environment.dataDirectories = { files_.path("data") };
            environment.systemDataDirectory = files_.path("data");
            environment.desktops = { "XFCE" };
            environment.programDirectories = { "/usr/bin", "/bin" };
            writeRecords(hasPlasma);
            settle();
            ApplicationBundles(environment, nullptr).bringUpToDate();
            settle();
            ApplicationBundles(environment, nullptr).bringUpToDate();
        }

        XdgEnvironment environment;

    private:
        void writeRecords(bool hasPlasma)
        {
            std::string list = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xbel version=\"1.0\">\n";
            std::string rows = "BEGIN;CREATE TABLE ResourceScoreCache(targettedResource TEXT, lastUpdate INTEGER);"
                               "CREATE TABLE ResourceEvent(targettedResource TEXT, start INTEGER, end INTEGER);";
            for (int number = 0; number < kDocuments; ++number) {
                const std::string name = "documents/Report " + std::to_string(number) + " of the year.odt";
                if (number < kNewest && number % (kNewest / kLimit) == 0)
                    files_.writeFile(name, "text");
                list += bookmark(URL::fileURLWithPath(files_.path(name)).absoluteString(), minutesAgo(number));
                const auto when = static_cast<long>(Date::now().secondsSinceUnixEpoch()) - 60L * number;
                rows +=
                    "INSERT INTO ResourceScoreCache VALUES('" + files_.path(name) + "'," + std::to_string(when) + ");";
            }
            files_.writeFile("home/recently-used.xbel", list + "</xbel>\n");
            std::string state = "<application-state>";
            for (int number = 0; number < kUsedApplications; ++number) {
                const auto when = static_cast<long>(Date::now().secondsSinceUnixEpoch()) - 3600L * 20 * number;
                state += "<application id=\"org.example.App" + std::to_string(number) + ".desktop\" last-seen=\""
                    + std::to_string(when) + "\"/>";
            }
            files_.writeFile("home/gnome-shell/application_state", state + "</application-state>");
            if (hasPlasma)
                writeDatabase(rows + "COMMIT;");
        }

        static std::string bookmark(const std::string& uri, const std::string& date)
        {
            return "  <bookmark href=\"" + uri + "\" added=\"" + date + "\" modified=\"" + date + "\" visited=\"" + date
                + "\">\n    <info>\n      <metadata owner=\"http://freedesktop.org\">\n"
                  "        <mime:mime-type type=\"application/vnd.oasis.opendocument.text\"/>\n        "
                  "<bookmark:groups>\n"
                  "          <bookmark:group>Office</bookmark:group>\n        </bookmark:groups>\n"
                  "        <bookmark:applications>\n          <bookmark:application name=\"Writer\" "
                  "exec=\"&apos;soffice %u&apos;\" modified=\""
                + date
                + "\" count=\"3\"/>\n          <bookmark:application name=\"Files\" exec=\"&apos;files %u&apos;\" "
                + "modified=\"" + date + "\" count=\"1\"/>\n        </bookmark:applications>\n      </metadata>\n"
                + "    </info>\n  </bookmark>\n";
        }

        void writeDatabase(const std::string& statements)
        {
            sqlite3* database = nullptr;
            const std::string file = files_.makeDirectory("home/kactivitymanagerd/resources") + "/database";
            if (sqlite3_open(file.c_str(), &database) != SQLITE_OK
                || sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
                std::fprintf(stderr, "%s\n", sqlite3_errmsg(database));
            sqlite3_close(database);
        }

        // Makes all files older, because those of a real home directory were not written just now.
        void settle()
        {
            const auto past = fs::file_time_type::clock::now() - std::chrono::hours(1);
            for (const auto& entry : fs::recursive_directory_iterator(files_.path())) {
                if (!entry.is_symlink())
                    fs::last_write_time(entry.path(), past);
            }
        }

        TemporaryDirectory files_;
    };

    // The state of a process that was just started, before any of it was used.
    class Process {
    public:
        explicit Process(const Home& home)
            : bundles_(home.environment, nullptr),
              workspace_(bundles_, nullptr),
              index_(bundles_, nullptr),
              defaults_(home.environment.dataHome + "/defaults.plist")
        {
            controller_ = StatusMenuItemController::create();
        }
        ~Process()
        {
            controller_.reset();
            MainMenuItem::actualMenuItems().clear();
        }

        // Opens the menu of the only item and returns the seconds until its rows are there.
        double open(MenuItemType type, std::size_t expectedRows)
        {
            auto item = std::make_shared<MainMenuItem>(type, "Recent");
            item->maxNumberOfRecentItems = kLimit;
            MainMenuItem::actualMenuItems() = { item };
            FakeUser person(controller_->statusItem()->menu());
            person.open();
            const auto start = SteadyClock::now();
            person.openSubmenu("Recent");
            const std::chrono::duration<double> time = SteadyClock::now() - start;
            const std::size_t rows = person.tracking().menu(1)->itemArray().size();
            if (rows != expectedRows) {
                std::fprintf(stderr, "%zu rows where %zu were expected\n", rows, expectedRows);
                std::exit(EXIT_FAILURE);
            }
            person.close();
            return time.count();
        }

    private:
        HeadlessDesktop desktop_;
        ApplicationBundles bundles_;
        LinuxWorkspace workspace_;
        RecentUseIndex index_;
        UserDefaults defaults_;
        const Installed<UserDefaults> installedDefaults_ { defaults_ };
        const Installed<NSWorkspace> installedWorkspace_ { workspace_ };
        const Installed<MetadataIndex> installedIndex_ { index_ };
        std::shared_ptr<StatusMenuItemController> controller_;
    };

    struct Case {
        const char* name;
        MenuItemType type;
        bool hasPlasma;
        // Each menu ends with a separator and "Clear Menu"; the one of both kinds has two headings and one more
        // separator.
        std::size_t rows;
    };
    constexpr Case kCases[] = {
        { "documents", MenuItemType::recentItemsDocs, false, kLimit + 2 },
        { "applications", MenuItemType::recentItemsApps, false, kUsedApplications + 2 },
        { "both", MenuItemType::recentItems, false, kLimit + kUsedApplications + 5 },
        { "documentsOnPlasma", MenuItemType::recentItemsDocs, true, kLimit + 2 },
    };

    void first(benchmark::State& state, const Case& tested)
    {
        const Home home(tested.hasPlasma);
        for (auto _ : state) {
            Process process(home);
            state.SetIterationTime(process.open(tested.type, tested.rows));
        }
    }

    void next(benchmark::State& state, const Case& tested)
    {
        const Home home(tested.hasPlasma);
        Process process(home);
        process.open(tested.type, tested.rows);
        for (auto _ : state)
            state.SetIterationTime(process.open(tested.type, tested.rows));
    }

    // Returns false if a menu takes longer than it may.
    bool report(const RatioReporter& figures)
    {
        constexpr double kLongestFirst = 40;
        constexpr double kLongestNext = 3;
        bool isFast = true;
        std::printf("\n%-20s  %10s  %10s\n", "ms to open", "first", "next");
        for (const Case& tested : kCases) {
            const std::string suffix = std::string("/") + tested.name + "/manual_time";
            const double firstTime = figures.median("first" + suffix) * 1e3;
            const double nextTime = figures.median("next" + suffix) * 1e3;
            std::printf("%-20s  %10.2f  %10.2f\n", tested.name, firstTime, nextTime);
            isFast = isFast && firstTime <= kLongestFirst && nextTime <= kLongestNext;
        }
        std::printf("\n%d documents recorded, %d applications installed; at most %.0f and %.0f ms\n", kDocuments,
                    kApplications, kLongestFirst, kLongestNext);
        return isFast;
    }

} // namespace

} // namespace quillbox

int main(int argc, char** argv)
{
    using namespace quillbox;
    std::vector<char*> arguments(argv, argv + argc);
    std::string repetitions = "--benchmark_repetitions=9";
    std::string time = "--benchmark_min_time=0.05";
    arguments.insert(arguments.begin() + 1, { repetitions.data(), time.data() });
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    for (const Case& tested : kCases) {
        benchmark::RegisterBenchmark((std::string("first/") + tested.name).c_str(), first, tested)->UseManualTime();
        benchmark::RegisterBenchmark((std::string("next/") + tested.name).c_str(), next, tested)->UseManualTime();
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return report(reporter) ? EXIT_SUCCESS : EXIT_FAILURE;
}
