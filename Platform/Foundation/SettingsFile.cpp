#include "SettingsFile.h"

#include "Clock.h"
#include "DamagedFile.h"
#include "FileContents.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace quillbox {

namespace {

    constexpr std::size_t kMaximumFileSize = std::size_t { 64 } << 20;
    // How long a file has to stay as it is before it counts as damaged and not as being written.
    constexpr std::chrono::milliseconds kQuiet { 2000 };

} // namespace

Result<std::optional<SettingsFile::Stamp>> SettingsFile::stampNow() const
{
    struct stat status { };
    if (::stat(path_.c_str(), &status) == 0)
        return std::optional(
            Stamp { status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec });
    if (errno == ENOENT)
        return std::optional<Stamp>();
    return Error::fromErrno(errno, "couldn't read the settings", path_);
}

void SettingsFile::refresh()
{
    const Result<std::optional<Stamp>> present = stampNow();
    if (!present) {
        failReading(present.error());
        return;
    }
    if (wasRead_ && !readError_ && *present == stamp_)
        return;
    if (!*present) {
        finishReading({}, std::nullopt);
        return;
    }
    const Result<Data> bytes = readFile(path_, kMaximumFileSize);
    if (!bytes) {
        failReading(Error::fromErrno(bytes.error().code, "couldn't read the settings", path_));
        return;
    }
    Result<PropertyList> list = PropertyList::fromData(*bytes);
    auto* dictionary = list ? list->as<PropertyList::Dictionary>() : nullptr;
    if (!dictionary) {
        meetDamage(**present);
        return;
    }
    changesOfOthers_ += wasRead_ && *dictionary != values_ ? 1 : 0;
    finishReading(std::move(*dictionary), *present);
}

void SettingsFile::finishReading(PropertyList::Dictionary values, std::optional<Stamp> stamp)
{
    values_ = std::move(values);
    stamp_ = stamp;
    wasRead_ = true;
    readError_.reset();
    lastReport_.reset();
    unsettled_.reset();
}

// Reports that the file can't be read. Values that were read before stay in use.
void SettingsFile::failReading(const Error& error)
{
    const bool isNew = lastReport_ != error;
    readError_ = error;
    lastReport_ = error;
    if (isNew)
        onProblem(error);
}

void SettingsFile::meetDamage(const Stamp& stamp)
{
    if (!isQuiet(stamp)) {
        // Nothing is reported yet: most likely the file is whole at the next look.
        readError_ = Error { 0, "another program is writing the settings at this moment:", path_ };
        return;
    }
    const Result<std::string> kept = setDamagedFileAside(path_);
    if (!kept) {
        failReading(Error::fromErrno(kept.error().code,
                                     "the settings are damaged, and couldn't be set aside to be replaced:", path_));
        return;
    }
    finishReading({}, std::nullopt);
    onProblem(
        Error { 0, "the settings were damaged, so Quillbox starts with new ones; the old file was kept as", *kept });
}

bool SettingsFile::isQuiet(const Stamp& stamp)
{
    const double written = static_cast<double>(stamp.seconds) + static_cast<double>(stamp.nanoseconds) * 1e-9;
    const double age = Date::now().secondsSinceUnixEpoch() - written;
    if (age * 1000 >= static_cast<double>(kQuiet.count()))
        return true;
    // The clock that stamped the file may be ahead of ours, so the time since it was first seen counts too.
    const std::chrono::milliseconds now = Clock::current().uptime();
    if (unsettled_ != stamp) {
        unsettled_ = stamp;
        unsettledSince_ = now;
    }
    return now - unsettledSince_ >= kQuiet;
}

Result<void> SettingsFile::replace(PropertyList::Dictionary values)
{
    const Result<Data> bytes = PropertyList(values).binaryData();
    if (!bytes)
        return Error { bytes.error().code, "couldn't save the settings: " + bytes.error().what, path_ };
    if (bytes->size() > kMaximumFileSize)
        return Error::fromErrno(EFBIG, "couldn't save the settings in", path_);
    if (auto replaced = replaceFile(path_, *bytes, 0600); !replaced)
        return Error::fromErrno(replaced.error().code, "couldn't save the settings in", replaced.error().path);
    const Result<std::optional<Stamp>> present = stampNow();
    finishReading(std::move(values), present ? *present : std::nullopt);
    return {};
}

Result<void> SettingsFile::remove()
{
    const Result<std::string> place = followingLinks(path_);
    if (!place)
        return Error::fromErrno(place.error().code, "couldn't delete the settings", path_);
    if (::unlink(place->c_str()) != 0 && errno != ENOENT)
        return Error::fromErrno(errno, "couldn't delete the settings", *place);
    finishReading({}, std::nullopt);
    return {};
}

} // namespace quillbox
