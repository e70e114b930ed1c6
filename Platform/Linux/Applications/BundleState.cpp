#include "BundleState.h"

#include "FileContents.h"
#include "RegenerableFile.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <string_view>

namespace quillbox {

namespace {

    constexpr std::string_view kFormat = "quillbox bundles 2";
    constexpr std::string_view kEnd = "end";
    constexpr std::size_t kLargestStateFile = 64 << 20;
    // All of them, in the order they are stored.
    constexpr std::string InstalledApplication::*kApplicationFields[] = {
        &InstalledApplication::path,    &InstalledApplication::desktopId, &InstalledApplication::entryPath,
        &InstalledApplication::program, &InstalledApplication::title,
    };

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

BundleState::BundleState(const XdgEnvironment& environment) : environment_(environment) { }

void BundleState::watch(const std::string& path)
{
    paths_.push_back({ path, FileStamp::settledOf(path) });
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
    append(text, std::to_string(applications.size()));
    for (const InstalledApplication& application : applications) {
        for (const auto field : kApplicationFields)
            append(text, application.*field);
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
    if (!fields.takes(count))
        return std::nullopt;
    while (count-- > 0) {
        InstalledApplication& application = state.applications.emplace_back();
        for (const auto field : kApplicationFields) {
            const auto value = fields.next();
            if (!value)
                return std::nullopt;
            application.*field = *value;
        }
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
