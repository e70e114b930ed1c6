#include "BigDirectory.h"

#include "Check.h"
#include "StringComparison.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quillbox {

namespace fs = std::filesystem;

namespace {

    constexpr std::size_t kBufferSize = 1U << 18;

    std::string entryName(std::mt19937& random, std::size_t number)
    {
        static constexpr std::array<const char*, 12> kStems { "IMG_2023",
                                                              "Screenshot from ",
                                                              "report-final-v",
                                                              "The Long Way Home ",
                                                              "invoice ",
                                                              "notes",
                                                              "backup_of_project_",
                                                              "Chapter ",
                                                              "DSC",
                                                              "Quarterly figures ",
                                                              "track",
                                                              "a letter to the council " };
        static constexpr std::array<const char*, 10> kExtensions { ".jpg", ".png",  ".pdf", ".txt", ".docx",
                                                                   ".mp3", ".html", ".cpp", ".zip", ".odt" };
        return kStems[random() % kStems.size()] + std::to_string(number)
            + (number % 10 == 0 ? "" : kExtensions[random() % kExtensions.size()]);
    }

    // Calls `entry(name, directory descriptor)` for each name in the directory.
    template <class Entry>
    std::size_t forEachName(const std::string& directory, Entry entry)
    {
        struct RawEntry {
            std::uint64_t inode;
            std::int64_t offset;
            std::uint16_t length;
            std::uint8_t type;
            char name[1];
        };
        static std::vector<char> buffer(kBufferSize);
        const int descriptor = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        QB_CHECK(descriptor >= 0);
        std::size_t count = 0;
        for (;;) {
            const long size = syscall(SYS_getdents64, descriptor, buffer.data(), buffer.size());
            QB_CHECK(size >= 0);
            if (size == 0)
                break;
            for (long position = 0; position < size;) {
                const auto* raw = reinterpret_cast<const RawEntry*>(buffer.data() + position);
                position += raw->length;
                const std::string_view name(raw->name);
                if (name == "." || name == "..")
                    continue;
                entry(name, descriptor);
                ++count;
            }
        }
        close(descriptor);
        return count;
    }

} // namespace

std::string bigDirectory(const std::string& parent, std::size_t count)
{
    const fs::path directory = fs::path(parent) / ("entries-" + std::to_string(count));
    const fs::path finished = directory.string() + ".complete";
    if (fs::exists(finished))
        return directory.string();
    std::fprintf(stderr, "making %zu entries in %s\n", count, directory.c_str());
    fs::remove_all(directory);
    fs::create_directories(directory);
    std::mt19937 random(static_cast<std::mt19937::result_type>(count));
    std::vector<std::size_t> numbers(count);
    for (std::size_t number = 0; number < count; ++number)
        numbers[number] = number;
    std::shuffle(numbers.begin(), numbers.end(), random);
    for (const std::size_t number : numbers) {
        const fs::path path = directory / entryName(random, number);
        if (number % 10 == 0) {
            fs::create_directory(path);
        } else {
            const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
            QB_CHECK(descriptor >= 0);
            close(descriptor);
        }
    }
    fs::create_directory(finished);
    return directory.string();
}

std::size_t listAndLook(const std::string& directory)
{
    std::uint64_t sum = 0;
    const std::size_t count = forEachName(directory, [&sum](std::string_view name, int descriptor) {
        struct statx look { };
        QB_CHECK(statx(descriptor, name.data(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS, &look) == 0);
        sum += look.stx_ino;
    });
    QB_CHECK(sum > 0);
    return count;
}

std::size_t listAndSort(const std::string& directory)
{
    std::vector<std::pair<std::string, std::string>> names;
    forEachName(directory, [&names](std::string_view name, int) { names.emplace_back(nameSortKey(name), name); });
    std::sort(names.begin(), names.end());
    return names.size();
}

} // namespace quillbox
