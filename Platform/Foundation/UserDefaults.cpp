#include "UserDefaults.h"

#include "Bundle.h"
#include "DamagedFile.h"
#include "FileContents.h"
#include "FileManager.h"
#include "Installed.h"
#include "URL.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace quillbox {

namespace {

    constexpr std::size_t kMaximumFileSize = std::size_t { 64 } << 20;

    // What changes when a file is written or replaced.
    struct FileStamp {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;
        friend bool operator==(const FileStamp&, const FileStamp&) = default;
    };

    FileStamp stampOf(const struct stat& status)
    {
        return { status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec };
    }

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
    explicit State(std::string filePath) : path(std::move(filePath)) { }

    std::string path;
    // What the file held when it was read last.
    PropertyList::Dictionary stored;
    // What was set since the last write; none means removed.
    std::map<std::string, std::optional<PropertyList>> pending;
    // The file as it was read last; none where there was none.
    std::optional<FileStamp> stamp;
    bool wasRead = false;
    // Why the file can't be read, while it can't.
    std::optional<Error> readError;
    std::optional<Error> lastReadReport;
    std::optional<Error> lastWriteReport;
    std::function<void(const Error&)> failureHandler;
    // Failures from before there was a handler.
    std::vector<Error> unreported;

    void report(const Error& error)
    {
        if (failureHandler)
            failureHandler(error);
        else
            unreported.push_back(error);
    }

    void reportOnce(const Error& error, std::optional<Error>& last)
    {
        if (last == error)
            return;
        last = error;
        report(error);
    }

    // Reads the file if it has changed since, or could not be read the last time.
    void refresh()
    {
        struct stat status { };
        std::optional<FileStamp> present;
        if (::stat(path.c_str(), &status) == 0) {
            present = stampOf(status);
        } else if (errno != ENOENT) {
            failReading(Error::fromErrno(errno, "couldn't read the settings", path));
            return;
        }
        if (wasRead && !readError && present == stamp)
            return;
        if (!present) {
            finishReading({}, std::nullopt);
            return;
        }
        const Result<Data> bytes = readFile(path, kMaximumFileSize);
        if (!bytes) {
            failReading(Error::fromErrno(bytes.error().code, "couldn't read the settings", path));
            return;
        }
        Result<PropertyList> list = PropertyList::fromData(*bytes);
        if (auto* dictionary = list ? list->as<PropertyList::Dictionary>() : nullptr)
            finishReading(std::move(*dictionary), present);
        else
            moveDamagedAside();
    }

    void finishReading(PropertyList::Dictionary values, std::optional<FileStamp> newStamp)
    {
        stored = std::move(values);
        stamp = newStamp;
        wasRead = true;
        readError.reset();
        lastReadReport.reset();
    }

    // The values read before, if any, stay in use.
    void failReading(Error error)
    {
        reportOnce(error, lastReadReport);
        readError = std::move(error);
    }

    void moveDamagedAside()
    {
        const Result<std::string> kept = setDamagedFileAside(path);
        if (!kept) {
            failReading(Error::fromErrno(kept.error().code,
                                         "the settings are damaged, and couldn't be set aside to be replaced:", path));
            return;
        }
        finishReading({}, std::nullopt);
        report(Error { 0, "the settings were damaged, so Quillbox starts with new ones; the old file was kept as",
                       *kept });
    }

    std::optional<PropertyList> value(const std::string& key)
    {
        refresh();
        if (const auto changed = pending.find(key); changed != pending.end())
            return changed->second;
        const auto found = stored.find(key);
        return found == stored.end() ? std::nullopt : std::optional(found->second);
    }

    PropertyList::Dictionary merged() const
    {
        PropertyList::Dictionary values = stored;
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
        refresh();
        if (readError)
            return *readError;
        PropertyList::Dictionary values = merged();
        if (values != stored) {
            const Result<Data> bytes = PropertyList(values).binaryData();
            if (!bytes)
                return bytes.error();
            if (auto replaced = replaceFile(path, *bytes, 0600); !replaced)
                return Error::fromErrno(replaced.error().code, "couldn't save the settings in", replaced.error().path);
            struct stat status { };
            const bool isThere = ::stat(path.c_str(), &status) == 0;
            finishReading(std::move(values), isThere ? std::optional(stampOf(status)) : std::nullopt);
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
    // Past the ends of the range it gives the nearest number.
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
    state_->pending.insert_or_assign(forKey, std::move(value));
}

void UserDefaults::removeObject(const std::string& forKey)
{
    state_->pending.insert_or_assign(forKey, std::nullopt);
}

PropertyList::Dictionary UserDefaults::dictionaryRepresentation()
{
    state_->refresh();
    return state_->merged();
}

void UserDefaults::removePersistentDomain(const std::string& name)
{
    if (name != Bundle::main().bundleIdentifier())
        return;
    state_->pending.clear();
    if (::unlink(state_->path.c_str()) != 0 && errno != ENOENT) {
        state_->report(Error::fromErrno(errno, "couldn't delete the settings", state_->path));
        return;
    }
    state_->finishReading({}, std::nullopt);
}

Result<void> UserDefaults::synchronize()
{
    if (state_->pending.empty())
        return {};
    Result<void> written = state_->write();
    if (written)
        state_->lastWriteReport.reset();
    else
        // What can't be read has been reported by then.
        state_->reportOnce(written.error(), state_->readError ? state_->lastReadReport : state_->lastWriteReport);
    return written;
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
    return state_->path;
}

UserDefaults& UserDefaults::standard()
{
    if (UserDefaults* const installed = Installed<UserDefaults>::current())
        return *installed;
    // Never destroyed: an exit that skips the ordinary end may still run events.
    static auto* const defaults = new UserDefaults(standardPath());
    return *defaults;
}

} // namespace quillbox
