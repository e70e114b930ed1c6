#include "FuzzTarget.h"

#include "Check.h"
#include "GnomeUseRecord.h"
#include "OwnUseRecord.h"
#include "RecentlyUsedList.h"

#include <algorithm>
#include <filesystem>

namespace quillbox {

namespace {

    void checkUses(const RecentUses& uses)
    {
        for (const FileUse& use : uses.files)
            QB_CHECK(use.path.starts_with('/') && use.path.find('\0') == std::string::npos && use.when >= 0);
    }

    void readRecentlyUsed(const Data& bytes)
    {
        scratchDirectory().writeFile("xbel/recently-used.xbel", textOf(bytes));
        RecentlyUsedList list(scratchDirectory().path("xbel"));
        list.refresh();
        checkUses(list.uses());
    }

    void readApplicationState(const Data& bytes)
    {
        scratchDirectory().writeFile("gnome/gnome-shell/application_state", textOf(bytes));
        GnomeUseRecord record(scratchDirectory().path("gnome"));
        record.refresh();
        QB_CHECK(record.uses().files.empty());
    }

    // Whatever the record held, what is opened now must be in it, and nothing that it held may be lost.
    void readOwnRecord(const Data& bytes)
    {
        const std::string directory = scratchDirectory().path("own/quillbox");
        std::filesystem::remove_all(directory);
        scratchDirectory().writeFile("own/quillbox/recent-use.plist", textOf(bytes));
        int reportCount = 0;
        OwnUseRecord record(scratchDirectory().path("own"), [&](const Error&) { ++reportCount; });
        record.refresh();
        checkUses(record.uses());
        const bool wasDamaged = reportCount > 0;
        record.addFile("/opened now");
        record.addApplication("now.desktop");
        OwnUseRecord later(scratchDirectory().path("own"), [](const Error&) { QB_CHECK(!"reported"); });
        later.refresh();
        const auto& files = later.uses().files;
        QB_CHECK(std::any_of(files.begin(), files.end(), [](const FileUse& use) { return use.path == "/opened now"; }));
        const std::filesystem::directory_iterator names(directory);
        QB_CHECK(std::distance(begin(names), end(names)) == (wasDamaged ? 2 : 1));
    }

    const FuzzTarget kRecentlyUsed("recently-used", readRecentlyUsed);
    const FuzzTarget kApplicationState("application-state", readApplicationState);
    const FuzzTarget kOwnRecord("own-record", readOwnRecord);

} // namespace

} // namespace quillbox
