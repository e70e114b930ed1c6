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

// Knows what was used when on a freedesktop desktop: the shared list of recently used files, Plasma's and GNOME's
// records, and our own of what was opened through Quillbox. Asked when a menu of recent items opens; then, and only
// then, it reads those records that have changed. An application is its bundle's path, a file its path in a record;
// whether anything is there is for whoever asks to find out. `bundles` must outlive it.
class RecentUseIndex final : public MetadataIndex {
public:
    // `onError` is told of trouble with our own record.
    RecentUseIndex(ApplicationBundles& bundles, std::function<void(const Error&)> onError);

    std::vector<std::string> pathsLastUsed(Date from, Date until) override;

    // Something was opened through Quillbox: a file by its canonical path, a bundle, or an application's desktop entry.
    void noteOpened(const std::string& path);

private:
    struct Use {
        // In seconds since 1970.
        double when;
        // It belongs to a record or to the keeper of bundles.
        const std::string* path;
    };

    bool refreshRecords();
    void merge();
    // Null where `path` is no application's.
    const InstalledBundle* applicationAt(const std::string& path) const;

    ApplicationBundles& bundles_;
    RecentlyUsedList recentlyUsedList_;
    PlasmaUseRecord plasmaRecord_;
    GnomeUseRecord gnomeRecord_;
    OwnUseRecord ownRecord_;
    // The oldest use is first. Each path is there once, with its newest moment.
    std::vector<Use> uses_;
    // The generation of the bundles that uses_ was made with; none before that.
    std::optional<unsigned> generation_;
};

} // namespace quillbox
