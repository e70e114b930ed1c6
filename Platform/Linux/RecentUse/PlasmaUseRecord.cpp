#include "PlasmaUseRecord.h"

#include "FileContents.h"
#include "URL.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <string_view>

namespace quillbox {

namespace {

    constexpr const char* kDatabase = "/kactivitymanagerd/resources/database";
    constexpr const char* kLogSuffix = "-wal";
    constexpr const char* kIndexSuffix = "-shm";
    constexpr const char* kJournalSuffix = "-journal";
    constexpr std::size_t kLargestCopy = 64 << 20;
    constexpr std::string_view kApplicationScheme = "applications:";

    // The bytes of a database's header that say how it is written and read, and their values with and without a
    // write-ahead log.
    constexpr std::size_t kFormatBytes[] = { 18, 19 };
    constexpr std::uint8_t kWithLog = 2;
    constexpr std::uint8_t kWithoutLog = 1;

    // These bits of a result code give its kind; the others give details.
    constexpr int kPrimaryResult = 0xff;

    struct CloseDatabase {
        void operator()(sqlite3* database) const { sqlite3_close(database); }
    };
    struct FinalizeStatement {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    using Database = std::unique_ptr<sqlite3, CloseDatabase>;
    using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

    bool exists(const std::string& path)
    {
        struct stat status { };
        return lstat(path.c_str(), &status) == 0;
    }

    Database opened(const std::string& name)
    {
        sqlite3* database = nullptr;
        const int flags = SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX;
        const int result = sqlite3_open_v2(name.c_str(), &database, flags, nullptr);
        Database owned(database);
        return result == SQLITE_OK ? std::move(owned) : nullptr;
    }

    // Returns the file name in the form that SQLite takes. The index of the log is only mapped, so neither file is
    // created if a program that ended has left none.
    std::string uriOf(const std::string& path)
    {
        std::string uri = URL::fileURLWithPath(path).absoluteString();
        return uri + "?mode=ro&readonly_shm=1";
    }

    void addRow(RecentUses& uses, const std::string& resource, double when)
    {
        if (!resource.starts_with(kApplicationScheme))
            uses.addFile(resource, when);
        else if (when > 0)
            uses.applications.push_back({ resource.substr(kApplicationScheme.size()), {}, {}, when });
    }

    // Trying again would not change these results: a missing table has no rows, and a damaged one gives the rows before
    // the damage.
    bool isFinal(int result)
    {
        return result == SQLITE_DONE || result == SQLITE_ERROR || result == SQLITE_CORRUPT || result == SQLITE_NOTADB;
    }

    // Returns false if the rows can't be read at the moment.
    bool addRows(sqlite3* database, const char* query, RecentUses& uses)
    {
        sqlite3_stmt* prepared = nullptr;
        const int result = sqlite3_prepare_v2(database, query, -1, &prepared, nullptr);
        const Statement statement(prepared);
        if (result != SQLITE_OK)
            return isFinal(result & kPrimaryResult);
        int step = SQLITE_ROW;
        while ((step = sqlite3_step(prepared)) == SQLITE_ROW) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(prepared, 0));
            if (text)
                addRow(uses, text, sqlite3_column_double(prepared, 1));
        }
        return isFinal(step & kPrimaryResult);
    }

    bool run(sqlite3* database, const char* command)
    {
        return sqlite3_exec(database, command, nullptr, nullptr, nullptr) == SQLITE_OK;
    }

    std::optional<RecentUses> usesIn(sqlite3* database)
    {
        RecentUses uses;
        sqlite3_busy_timeout(database, 0);
        if (!run(database, "PRAGMA query_only = 1") || !run(database, "BEGIN"))
            return std::nullopt;
        const bool isRead = addRows(database,
                                    "SELECT targettedResource, MAX(lastUpdate) FROM ResourceScoreCache"
                                    " GROUP BY targettedResource",
                                    uses)
            && addRows(database,
                       "SELECT targettedResource, MAX(MAX(start, COALESCE(end, 0))) FROM ResourceEvent"
                       " GROUP BY targettedResource",
                       uses);
        run(database, "ROLLBACK");
        return isRead ? std::optional(std::move(uses)) : std::nullopt;
    }

} // namespace

PlasmaUseRecord::PlasmaUseRecord(const std::string& dataHome)
    : UseRecord({ dataHome + kDatabase, dataHome + kDatabase + kLogSuffix })
{
}

std::optional<RecentUses> PlasmaUseRecord::read()
{
    const FileStamp before = FileStamp::of(file());
    if (before == FileStamp())
        return exists(file()) ? std::nullopt : std::optional(RecentUses());
    // While a program has the database open, there is a log with its index. Without them the file alone is complete,
    // but SQLite would create both beside it to read it; therefore a copy in memory is read instead.
    const auto isBeingWritten = [&] {
        return exists(file() + kIndexSuffix) || FileStamp::of(file() + kLogSuffix).size > 0
            || exists(file() + kJournalSuffix);
    };
    if (isBeingWritten()) {
        const Database database = opened(uriOf(file()));
        return database ? usesIn(database.get()) : std::nullopt;
    }
    Result<Data> bytes = readFile(file(), kLargestCopy);
    if (!bytes || isBeingWritten() || FileStamp::of(file()) != before)
        return std::nullopt;
    for (const std::size_t index : kFormatBytes) {
        if (bytes->size() > index && (*bytes)[index] == kWithLog)
            (*bytes)[index] = kWithoutLog;
    }
    const Database database = opened(":memory:");
    const auto size = static_cast<sqlite3_int64>(bytes->size());
    if (!database
        || sqlite3_deserialize(database.get(), "main", bytes->data(), size, size, SQLITE_DESERIALIZE_READONLY)
            != SQLITE_OK)
        return std::nullopt;
    return usesIn(database.get());
}

} // namespace quillbox
