#include "BundleState.h"

#include "FileContents.h"
#include "RegenerableFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <fstream>
#include <string_view>

namespace quillbox {

namespace {

    constexpr std::string_view kFormat = "quillbox bundles 1";
    constexpr std::string_view kEnd = "end";
    constexpr std::size_t kLargestStateFile = 64 << 20;

    // Time stamps of some file systems move in steps of this size: what was written this short a time ago may be
    // written again under the same stamp.
    constexpr std::int64_t kStampStep = 20'000'000;

    std::string bootIdentifier()
    {
        std::string identifier;
        std::ifstream("/proc/sys/kernel/random/boot_id") >> identifier;
        return identifier;
    }

    std::string readText(const std::string& file)
    {
        const Result<Data> bytes = readFile(file, kLargestStateFile);
        return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
    }

    // Fields are ended by NUL, which no path has.
    void append(std::string& text, std::string_view field)
    {
        text.append(field).push_back('\0');
    }

    class Fields {
    public:
        explicit Fields(std::string_view text) : rest_(text) { }

        // None at the end, and for a field that is cut off.
        std::optional<std::string_view> next()
        {
            const std::size_t end = rest_.find('\0');
            if (end == std::string_view::npos)
                return std::nullopt;
            const std::string_view field = rest_.substr(0, end);
            rest_.remove_prefix(end + 1);
            return field;
        }
        bool takes(std::string_view expected) { return next() == expected; }
        template <class Number>
        bool takes(Number& number)
        {
            const auto field = next();
            return field
                && std::from_chars(field->data(), field->data() + field->size(), number).ptr
                == field->data() + field->size();
        }
        bool isEmpty() const { return rest_.empty(); }

    private:
        std::string_view rest_;
    };

} // namespace

FileStamp FileStamp::of(const std::string& path)
{
    struct stat status { };
    if (stat(path.c_str(), &status) != 0)
        return {};
    return { status.st_ino, status.st_size, status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec };
}

BundleState::BundleState(const XdgEnvironment& environment) : environment_(environment) { }

void BundleState::watch(const std::string& path)
{
    FileStamp stamp = FileStamp::of(path);
    const std::int64_t now =
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
            .count();
    // Equal to no real stamp, so that the next look is a real one.
    if (stamp.modified > now - kStampStep && stamp.modified <= now + kStampStep)
        stamp.modified = -1;
    paths_.push_back({ path, stamp });
}

void BundleState::watchOwn(const std::string& path)
{
    paths_.push_back({ path, FileStamp::of(path) });
}

void BundleState::watchProgram(const std::string& name)
{
    if (std::none_of(programs_.begin(), programs_.end(), [&](const auto& known) { return known.name == name; }))
        programs_.push_back({ name, !environment_.findProgram(name).empty() });
}

bool BundleState::isCurrent() const
{
    return std::all_of(paths_.begin(), paths_.end(),
                       [](const WatchedPath& watched) { return watched.stamp == FileStamp::of(watched.path); })
        && std::all_of(programs_.begin(), programs_.end(), [&](const WatchedProgram& program) {
               return program.isFound == !environment_.findProgram(program.name).empty();
           });
}

std::string BundleState::serialized() const
{
    std::string text;
    append(text, kFormat);
    append(text, bootIdentifier());
    append(text, environment_.fingerprint());
    append(text, std::to_string(paths_.size()));
    for (const WatchedPath& watched : paths_) {
        append(text, watched.path);
        append(text, std::to_string(watched.stamp.inode));
        append(text, std::to_string(watched.stamp.size));
        append(text, std::to_string(watched.stamp.modified));
    }
    append(text, std::to_string(programs_.size()));
    for (const WatchedProgram& program : programs_) {
        append(text, program.name);
        append(text, program.isFound ? "1" : "0");
    }
    append(text, kEnd);
    return text;
}

std::optional<BundleState> BundleState::load(const std::string& file, const XdgEnvironment& environment)
{
    const std::string text = readText(file);
    Fields fields(text);
    BundleState state(environment);
    std::size_t count = 0;
    if (!fields.takes(kFormat) || !fields.takes(bootIdentifier()) || !fields.takes(environment.fingerprint())
        || !fields.takes(count)) {
        return std::nullopt;
    }
    while (count-- > 0) {
        const auto path = fields.next();
        FileStamp stamp;
        if (!path || !fields.takes(stamp.inode) || !fields.takes(stamp.size) || !fields.takes(stamp.modified))
            return std::nullopt;
        state.paths_.push_back({ std::string(*path), stamp });
    }
    if (!fields.takes(count))
        return std::nullopt;
    while (count-- > 0) {
        const auto name = fields.next();
        int isFound = 0;
        if (!name || !fields.takes(isFound))
            return std::nullopt;
        state.programs_.push_back({ std::string(*name), isFound != 0 });
    }
    if (!fields.takes(kEnd) || !fields.isEmpty())
        return std::nullopt;
    return state;
}

Result<void> BundleState::save(const std::string& file) const
{
    const std::string text = serialized();
    if (readText(file) == text)
        return {};
    return replaceRegenerableFile(file, text);
}

} // namespace quillbox
