#include "BundleState.h"

#include "FileContents.h"
#include "PathStatus.h"
#include "RegenerableFile.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <string_view>

namespace quillbox {

namespace {

    constexpr std::string_view kFormat = "quillbox bundles 3";
    constexpr std::string_view kEnd = "end";
    constexpr std::size_t kLargestStateFile = 64 << 20;
    // All text fields, in the order in which they are stored.
    constexpr std::string InstalledBundle::*kBundleFields[] = {
        &InstalledBundle::path,    &InstalledBundle::desktopId, &InstalledBundle::entryPath,
        &InstalledBundle::program, &InstalledBundle::title,
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

    // Every field ends with a NUL, which no path contains.
    void append(std::string& text, std::string_view field)
    {
        text.append(field).push_back('\0');
    }

    class Fields {
    public:
        explicit Fields(std::string_view text) : rest_(text) { }

        // Returns nothing at the end, or if a field is cut off.
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

void BundleState::watchUnread(const std::string& path)
{
    unread_.push_back(path);
}

BundleState::Presence BundleState::presence(const std::string& program) const
{
    const Result<std::string> found = environment_.lookForProgram(program);
    if (!found)
        return Presence::unknown;
    return found->empty() ? Presence::absent : Presence::present;
}

void BundleState::watchProgram(const std::string& name)
{
    if (!programs_.contains(name))
        programs_.emplace(name, presence(name));
}

bool BundleState::isCurrent() const
{
    // A program that can't be looked for at the moment counts as unchanged.
    return std::all_of(paths_.begin(), paths_.end(),
                       [](const WatchedPath& watched) { return watched.stamp == FileStamp::of(watched.path); })
        && std::all_of(programs_.begin(), programs_.end(),
                       [&](const auto& program) {
                           const Presence now = presence(program.first);
                           return now == Presence::unknown || now == program.second;
                       })
        && std::none_of(unread_.begin(), unread_.end(),
                        [](const std::string& path) { return isAccessible(path, R_OK); });
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
    for (const auto& [name, known] : programs_) {
        append(text, name);
        append(text, known == Presence::present ? "1" : "0");
    }
    append(text, std::to_string(bundles.size()));
    for (const InstalledBundle& bundle : bundles) {
        append(text, bundle.kind == BundleKind::application ? "1" : "0");
        for (const auto field : kBundleFields)
            append(text, bundle.*field);
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
        state.programs_.emplace(*name, isFound != 0 ? Presence::present : Presence::absent);
    }
    if (!fields.takes(count))
        return std::nullopt;
    while (count-- > 0) {
        InstalledBundle& bundle = state.bundles.emplace_back();
        int isApplication = 0;
        if (!fields.takes(isApplication))
            return std::nullopt;
        bundle.kind = isApplication != 0 ? BundleKind::application : BundleKind::preferencePane;
        for (const auto field : kBundleFields) {
            const auto value = fields.next();
            if (!value)
                return std::nullopt;
            bundle.*field = *value;
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
