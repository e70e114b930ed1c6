#pragma once

#include "GnomeUseRecord.h"
#include "MDQuery.h"
#include "OwnUseRecord.h"
#include "PlasmaUseRecord.h"
#include "RecentlyUsedList.h"

#include <functional>
#include <string>
#include <vector>

namespace quillbox {

class ApplicationBundles;
struct InstalledBundle;

// Knows what was last used when on a freedesktop desktop: from the shared list of recently used files, from the records
// of Plasma and GNOME, and from our own record of what was opened through Quillbox. It is asked when a menu of recent
// items opens, and reads only then those records that have changed. An application is given by its bundle's path, a
// file by its path in a record; the caller has to find out whether anything is there. `bundles` must outlive the index.
class RecentUseIndex final : public MetadataIndex {
public:
    // `onError` is told of problems with our own record.
    RecentUseIndex(ApplicationBundles& bundles, std::function<void(const Error&)> onError);

    std::vector<std::string> pathsLastUsed(Date from, Date until) override;

    // Records that something was opened through Quillbox: a file by its canonical path, a bundle, or an application's
    // desktop entry.
    void noteOpened(const std::string& path);

private:
    struct Use {
        // In seconds since 1970.
        double when;
        // The text belongs to a record or to the keeper of bundles.
        const std::string* path;
    };

    bool refreshRecords();
    void merge();
    // Returns null if `path` does not belong to an application.
    const InstalledBundle* applicationAt(const std::string& path) const;

    ApplicationBundles& bundles_;
    RecentlyUsedList recentlyUsedList_;
    PlasmaUseRecord plasmaRecord_;
    GnomeUseRecord gnomeRecord_;
    OwnUseRecord ownRecord_;
    // The oldest use comes first. Each path occurs once, with its newest moment.
    std::vector<Use> uses_;
    // The generation of the bundles from which uses_ was made; empty before that.
    std::optional<unsigned> generation_;
};

} // namespace quillbox
