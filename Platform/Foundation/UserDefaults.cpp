#include "UserDefaults.h"

#include "Bundle.h"
#include "FileManager.h"
#include "Installed.h"
#include "SettingsFile.h"
#include "URL.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <vector>

namespace quillbox {

namespace {

    std::int64_t integerFromReal(double real)
    {
        constexpr double kLimit = 9223372036854775808.0;
        if (std::isnan(real))
            return 0;
        if (real >= kLimit)
            return std::numeric_limits<std::int64_t>::max();
        return real < -kLimit ? std::numeric_limits<std::int64_t>::min() : static_cast<std::int64_t>(real);
    }

    std::string standardPath()
    {
        std::string directory;
        if (const char* configured = std::getenv("XDG_CONFIG_HOME"); configured && configured[0] == '/')
            directory = configured;
        else
            directory = path::appending(FileManager::defaultManager().homeDirectoryForCurrentUser().path(), ".config");
        return path::appending(directory, "quillbox/defaults.plist");
    }

} // namespace

struct UserDefaults::State {
    explicit State(std::string path) : file(std::move(path))
    {
        file.onProblem = [this](const Error& error) { report(error); };
    }

    SettingsFile file;
    // Values set since the last write; one without a value is to be removed.
    std::map<std::string, std::optional<PropertyList>> pending;
    // Whether anything was set since the last attempt to write.
    bool isChanged = false;
    // Why the last attempt failed; none if it succeeded.
    std::optional<Error> lastWriteError;
    std::function<void(const Error&)> failureHandler;
    // Failures that happened before there was a handler.
    std::vector<Error> unreported;
    std::size_t reportCount = 0;

    void report(const Error& error)
    {
        ++reportCount;
        if (failureHandler)
            failureHandler(error);
        else
            unreported.push_back(error);
    }

    void change(const std::string& key, std::optional<PropertyList> value)
    {
        pending.insert_or_assign(key, std::move(value));
        isChanged = true;
    }

    std::optional<PropertyList> value(const std::string& key)
    {
        file.refresh();
        if (const auto changed = pending.find(key); changed != pending.end())
            return changed->second;
        const auto found = file.values().find(key);
        return found == file.values().end() ? std::nullopt : std::optional(found->second);
    }

    PropertyList::Dictionary merged() const
    {
        PropertyList::Dictionary values = file.values();
        for (const auto& [key, value] : pending) {
            if (value)
                values.insert_or_assign(key, *value);
            else
                values.erase(key);
        }
        return values;
    }

    Result<void> write()
    {
        file.refresh();
        if (const auto& error = file.readError())
            return Error { error->code, "couldn't save the settings: " + error->what, error->path };
        PropertyList::Dictionary values = merged();
        if (values != file.values()) {
            if (auto replaced = file.replace(std::move(values)); !replaced)
                return replaced;
        }
        pending.clear();
        return {};
    }
};

UserDefaults::UserDefaults(std::string path) : state_(std::make_unique<State>(std::move(path))) { }

UserDefaults::~UserDefaults() = default;

std::optional<PropertyList> UserDefaults::object(const std::string& forKey)
{
    return state_->value(forKey);
}

std::optional<Data> UserDefaults::data(const std::string& forKey)
{
    const std::optional<PropertyList> value = state_->value(forKey);
    const Data* bytes = value ? value->as<Data>() : nullptr;
    return bytes ? std::optional(*bytes) : std::nullopt;
}

std::int64_t UserDefaults::integer(const std::string& forKey)
{
    const std::optional<PropertyList> value = state_->value(forKey);
    if (!value)
        return 0;
    if (const auto* number = value->as<std::int64_t>())
        return *number;
    if (const auto* number = value->as<std::uint64_t>())
        return static_cast<std::int64_t>(*number);
    if (const auto* boolean = value->as<bool>())
        return *boolean ? 1 : 0;
    if (const auto* real = value->as<double>())
        return integerFromReal(*real);
    // For a text outside the range, strtoll() gives the nearest number.
    const auto* text = value->as<std::string>();
    return text ? std::strtoll(text->c_str(), nullptr, 10) : 0;
}

bool UserDefaults::boolean(const std::string& forKey)
{
    const std::optional<PropertyList> value = state_->value(forKey);
    if (!value)
        return false;
    if (const auto* boolean = value->as<bool>())
        return *boolean;
    if (const auto* number = value->as<std::int64_t>())
        return *number != 0;
    if (const auto* number = value->as<std::uint64_t>())
        return *number != 0;
    if (const auto* real = value->as<double>())
        return *real != 0;
    std::string text = value->as<std::string>() ? *value->as<std::string>() : std::string();
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c); });
    return text == "yes" || text == "true" || text == "1";
}

void UserDefaults::set(PropertyList value, const std::string& forKey)
{
    state_->change(forKey, std::move(value));
}

void UserDefaults::removeObject(const std::string& forKey)
{
    state_->change(forKey, std::nullopt);
}

PropertyList::Dictionary UserDefaults::dictionaryRepresentation()
{
    state_->file.refresh();
    return state_->merged();
}

void UserDefaults::removePersistentDomain(const std::string& name)
{
    if (name != Bundle::main().bundleIdentifier())
        return;
    state_->pending.clear();
    if (const Result<void> removed = state_->file.remove(); !removed)
        state_->report(removed.error());
}

bool UserDefaults::isReadable()
{
    state_->file.refresh();
    return !state_->file.readError();
}

std::uint64_t UserDefaults::changesOfOthers()
{
    state_->file.refresh();
    return state_->file.changesOfOthers();
}

Result<void> UserDefaults::synchronize()
{
    if (state_->pending.empty())
        return {};
    const bool isNews = std::exchange(state_->isChanged, false);
    const std::size_t reportsBefore = state_->reportCount;
    Result<void> written = state_->write();
    const std::optional<Error> error = written ? std::nullopt : std::optional(written.error());
    const bool isAnotherError = error != std::exchange(state_->lastWriteError, error);
    // A file that just turned out to be unreadable has been reported already.
    if (error && (isNews || isAnotherError) && state_->reportCount == reportsBefore)
        state_->report(*error);
    return written;
}

void UserDefaults::reportFailure(const Error& error)
{
    state_->report(error);
}

void UserDefaults::setFailureHandler(std::function<void(const Error&)> handler)
{
    state_->failureHandler = std::move(handler);
    if (!state_->failureHandler)
        return;
    for (const Error& error : std::exchange(state_->unreported, {}))
        state_->failureHandler(error);
}

const std::string& UserDefaults::path() const
{
    return state_->file.path();
}

UserDefaults& UserDefaults::standard()
{
    if (UserDefaults* const installed = Installed<UserDefaults>::current())
        return *installed;
    // It is never destroyed, because events may still run in an exit that skips the ordinary end.
    static auto* const defaults = new UserDefaults(standardPath());
    return *defaults;
}

} // namespace quillbox
