#include "BundleStore.h"

#include "BundleUpdate.h"
#include "FoundBundle.h"
#include "RegenerableFile.h"
#include "URL.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace quillbox {

namespace {

    constexpr BundleDomain kDomains[] = { BundleDomain::system, BundleDomain::local, BundleDomain::user };
    constexpr BundleKind kKinds[] = { BundleKind::application, BundleKind::preferencePane };
    // The trial file is larger than what file systems store beside a file's name, so a full disk refuses it.
    constexpr std::size_t kTrialSize = 8192;

    Result<void> makeDirectories(const std::string& directory)
    {
        struct stat status { };
        if (stat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
            return {};
        const std::string_view above = path::deletingLastPathComponent(directory);
        if (above.size() > 1) {
            if (Result<void> made = makeDirectories(std::string(above)); !made)
                return made;
        }
        if (mkdir(directory.c_str(), 0700) != 0)
            return Error::fromErrno(errno, "couldn't make the directory", directory);
        return {};
    }

    bool canBeWrittenInto(const std::string& directory)
    {
        const std::string trial = directory + '/' + std::string(kUnfinishedPrefix) + "trial";
        const bool isWritten =
            bool(makeDirectories(directory)) && bool(replaceRegenerableFile(trial, std::string(kTrialSize, ' ')));
        return isWritten && unlink(trial.c_str()) == 0;
    }

} // namespace

std::string BundleStore::directory(BundleDomain domain, BundleKind kind) const
{
    const char* domainName = domain == BundleDomain::system ? "/System"
        : domain == BundleDomain::local                     ? "/Local"
                                                            : "/User";
    return root_ + domainName + (kind == BundleKind::application ? "/Applications" : "/PreferencePanes");
}

std::vector<std::string> BundleStore::directories() const
{
    std::vector<std::string> directories;
    for (const BundleDomain domain : kDomains) {
        for (const BundleKind kind : kKinds)
            directories.push_back(directory(domain, kind));
    }
    return directories;
}

BundleStore::Outcome BundleStore::bringTo(const std::vector<PlannedBundle>& plan, const UnreadSources& unread) const
{
    Outcome outcome;
    FoundBundles found;
    for (const BundleKind kind : kKinds) {
        for (const BundleDomain domain : kDomains) {
            const std::string path = directory(domain, kind);
            if (const Result<void> made = makeDirectories(path); !made) {
                // Without its directory, every bundle would only report the same error.
                outcome.unwritten = { made.error() };
                return outcome;
            }
            Result<FoundBundles> here = readBundles(path, kind);
            if (!here) {
                outcome.unread = here.error();
                return outcome;
            }
            std::move(here->bundles.begin(), here->bundles.end(), std::back_inserter(found.bundles));
            std::move(here->others.begin(), here->others.end(), std::back_inserter(found.others));
        }
    }
    std::vector<std::string> directories;
    directories.reserve(plan.size());
    for (const PlannedBundle& planned : plan)
        directories.push_back(directory(planned.domain, planned.kind));
    return BundleUpdate(std::move(found), plan, directories, unread).run();
}

bool BundleStore::canBeWritten() const
{
    const std::vector<std::string> all = directories();
    return std::all_of(all.begin(), all.end(), canBeWrittenInto);
}

} // namespace quillbox
