#include "ApplicationBundles.h"
#include "BookmarkSearch.h"
#include "FileManager.h"
#include "TemporaryDirectory.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>

// Measures directories with very many entries of one kind, as an archive or a damaged installation may bring them: what
// a thousand cost, and what eight times as many cost. If work grows in proportion to the number, the second column is
// about eight.

namespace quillbox {

namespace {

    // Of processor time, the system's part included: it does not depend on what else is running.
    template <class Work>
    double milliseconds(const Work& work)
    {
        const std::clock_t start = std::clock();
        work();
        return static_cast<double>(std::clock() - start) * 1000 / CLOCKS_PER_SEC;
    }

    struct BundleFigures {
        double made;
        double renamed;
        double unchanged;
    };

    void writeEntries(const TemporaryDirectory& files, int count, const std::string& title)
    {
        for (int number = 0; number < count; ++number)
            files.writeFile("data/applications/org.example.App" + std::to_string(number) + ".desktop",
                            "[Desktop Entry]\nType=Application\nExec=true\nName=" + title + "\n");
        const auto past = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(files.path("data")))
            std::filesystem::last_write_time(entry.path(), past);
    }

    BundleFigures bundlesOfOneName(int count)
    {
        const TemporaryDirectory files;
        XdgEnvironment environment;
        environment.dataHome = files.makeDirectory("home");
        environment.dataDirectories = { files.path("data") };
        environment.systemDataDirectory = files.path("data");
        ApplicationBundles bundles(environment, nullptr);
        const auto update = [&] { bundles.bringUpToDate(); };
        BundleFigures figures {};
        writeEntries(files, count, "Twin");
        figures.made = milliseconds(update);
        writeEntries(files, count, "Brother");
        figures.renamed = milliseconds(update);
        update();
        figures.unchanged = milliseconds(update);
        return figures;
    }

    // Looks at all entries of a directory as its menu does. Returns the time that it took.
    double listing(int entries, int hiddenNames)
    {
        const TemporaryDirectory files;
        std::string hidden;
        for (int number = 0; number < hiddenNames; ++number)
            hidden += "hidden name " + std::to_string(number) + "\n";
        files.writeFile("d/.hidden", hidden);
        for (int number = 0; number < entries; ++number)
            files.writeFile("d/link " + std::to_string(number) + ".desktop",
                            "[Desktop Entry]\nType=Link\nURL=file:///tmp\n");
        return milliseconds([&] {
            const auto listed = FileManager::defaultManager().contentsOfDirectory(
                URL::fileURLWithPath(files.path("d")), DirectoryEnumerationOptions::skipsHiddenFiles);
            for (std::size_t index = 0; listed && index < listed->count(); ++index)
                static_cast<void>(listed->resourceValues(
                    index, URLResourceKey::isHidden | URLResourceKey::isDirectory | URLResourceKey::isAliasFile));
        });
    }

    // Ten picked files that are gone from a directory with that many entries.
    class MissingFiles {
    public:
        explicit MissingFiles(int entries)
        {
            for (int number = 0; number < entries; ++number)
                files_.writeFile("d/file " + std::to_string(number));
            for (int number = 0; number < kCount; ++number) {
                const std::string name = "d/picked " + std::to_string(number);
                bookmarks_.push_back(*URL::fileURLWithPath(files_.writeFile(name)).bookmarkData());
                files_.remove(name);
            }
        }
        double opening() const
        {
            return milliseconds([this] {
                const BookmarkSearchBound bound;
                bool isStale = false;
                for (const Data& bookmark : bookmarks_)
                    static_cast<void>(URL::resolvingBookmarkData(bookmark, isStale));
            });
        }
        // Each of them has its turn within as many openings.
        double openingOnceAllWereSought() const
        {
            for (int number = 0; number < kCount; ++number)
                opening();
            return opening();
        }

    private:
        static constexpr int kCount = 10;
        TemporaryDirectory files_;
        std::vector<Data> bookmarks_;
    };

    void print(const char* what, double few, double many)
    {
        std::printf("%-58s %10.1f %10.1f %8.1f\n", what, few, many, many / few);
    }

    void run()
    {
        constexpr int kFew = 1000;
        constexpr int kMany = 8 * kFew;
        std::printf("%-58s %10s %10s %8s\n", "", "1,000, ms", "8,000, ms", "ratio");
        // Made first: what was changed a moment ago is sought again in any case.
        const MissingFiles missingOfFew(kFew);
        const MissingFiles missingOfMany(kMany);
        const BundleFigures few = bundlesOfOneName(kFew);
        const BundleFigures many = bundlesOfOneName(kMany);
        print("applications of one name: bundles made", few.made, many.made);
        print("the same renamed", few.renamed, many.renamed);
        print("the same unchanged", few.unchanged, many.unchanged);
        constexpr int kHiddenNames = 100'000;
        print("link entries beside 100,000 names in .hidden: listed", listing(kFew, kHiddenNames),
              listing(kMany, kHiddenNames));
        print("ten missing picked files: an opening that seeks them", missingOfFew.opening(), missingOfMany.opening());
        print("the same once all were sought in vain", missingOfFew.openingOnceAllWereSought(),
              missingOfMany.openingOnceAllWereSought());
    }

} // namespace

} // namespace quillbox

int main()
{
    quillbox::run();
}
