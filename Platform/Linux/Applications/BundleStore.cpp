#include "BundleStore.h"

#include "Bundle.h"
#include "BundleName.h"
#include "FileContents.h"
#include "PropertyList.h"
#include "RegenerableFile.h"
#include "URL.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <set>
#include <string_view>

namespace quillbox {

namespace {

    constexpr BundleDomain kDomains[] = { BundleDomain::system, BundleDomain::local, BundleDomain::user };
    constexpr BundleKind kKinds[] = { BundleKind::application, BundleKind::preferencePane };
    constexpr std::string_view kUnfinishedPrefix = ".unfinished-";
    constexpr std::size_t kLargestInfo = 1 << 20;

    std::string_view extensionOf(BundleKind kind)
    {
        return kind == BundleKind::application ? ".app" : ".prefPane";
    }

    std::string infoPath(const std::string& bundle)
    {
        return bundle + "/Contents/Info.plist";
    }

    std::string entryLinkPath(const std::string& bundle)
    {
        return bundle + "/Contents/Entry.desktop";
    }

    std::optional<std::string> linkText(const std::string& path)
    {
        std::string text(4096, '\0');
        const ssize_t length = readlink(path.c_str(), text.data(), text.size());
        if (length < 0)
            return std::nullopt;
        text.resize(static_cast<std::size_t>(length));
        return text;
    }

    // A bundle as it is on disk.
    struct FoundBundle {
        BundleKind kind;
        std::string directory;
        std::string name;
        std::string desktopId;
        std::string entryPath;
        std::string info;

        std::string path() const { return directory + '/' + name; }
    };

    // Brings one store to one plan; used once.
    class Update {
    public:
        Update(const BundleStore& store, std::vector<PlannedBundle>& plan) : store_(store)
        {
            for (PlannedBundle& planned : plan)
                targets_.push_back({ &planned, store.directory(planned.domain, planned.kind) });
        }

        std::vector<Error> run()
        {
            for (const BundleKind kind : kKinds) {
                for (const BundleDomain domain : kDomains)
                    read(store_.directory(domain, kind), kind);
            }
            matchWithinDirectories();
            matchAcrossDirectories();
            assignNames();
            for (std::size_t index = 0; index < found_.size(); ++index) {
                if (!matched_.contains(index))
                    remove(found_[index].path());
            }
            moveAside();
            for (const Target& target : targets_) {
                bring(target);
                target.planned->path = target.path();
            }
            return std::move(errors_);
        }

    private:
        static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

        struct Target {
            PlannedBundle* planned;
            std::string directory;
            std::string name {};
            // Index of the bundle that becomes it; kNone where one has to be made.
            std::size_t found = kNone;

            std::string path() const { return directory + '/' + name; }
        };

        void read(const std::string& directory, BundleKind kind)
        {
            DIR* stream = opendir(directory.c_str());
            if (!stream)
                return;
            std::vector<std::string> names;
            while (const dirent* entry = readdir(stream)) {
                const std::string_view name = entry->d_name;
                if (name != "." && name != "..")
                    names.emplace_back(name);
            }
            closedir(stream);
            std::sort(names.begin(), names.end());
            for (const std::string& name : names) {
                FoundBundle bundle { kind, directory, name, {}, {}, {} };
                if (const auto entry = linkText(entryLinkPath(bundle.path()))) {
                    bundle.entryPath = *entry;
                    readInfo(bundle);
                    found_.push_back(std::move(bundle));
                } else if (!removeLeftover(bundle.path(), kind)) {
                    taken_.insert(bundle.path());
                }
            }
        }

        static void readInfo(FoundBundle& bundle)
        {
            const Result<Data> bytes = readFile(infoPath(bundle.path()), kLargestInfo);
            if (!bytes)
                return;
            bundle.info.assign(bytes->begin(), bytes->end());
            const auto list = PropertyList::fromData(*bytes);
            const PropertyList* identifier = list ? list->value("CFBundleIdentifier") : nullptr;
            if (const auto* text = identifier ? identifier->as<std::string>() : nullptr)
                bundle.desktopId = *text;
        }

        // What a process that was ended half-way through left. Takes nothing that has any content of another's.
        static bool removeLeftover(const std::string& bundle, BundleKind kind)
        {
            if (path::lastPathComponent(bundle).starts_with(kUnfinishedPrefix)) {
                unlink((infoPath(bundle) + ".new").c_str());
                unlink(infoPath(bundle).c_str());
            } else if (!bundle.ends_with(extensionOf(kind))) {
                return false;
            }
            rmdir((bundle + "/Contents").c_str());
            return rmdir(bundle.c_str()) == 0;
        }

        void match(Target& target, std::size_t index)
        {
            target.found = index;
            matched_.insert(index);
        }

        bool isFree(std::size_t index) const { return !matched_.contains(index); }

        void matchWithinDirectories()
        {
            // Two bundles of a directory may stand for one entry, so those that have their name already come first.
            for (const bool mustHaveName : { true, false }) {
                for (Target& target : targets_) {
                    for (std::size_t index = 0; index < found_.size() && target.found == kNone; ++index) {
                        const FoundBundle& bundle = found_[index];
                        const bool isSame = bundle.desktopId == target.planned->desktopId
                            || (bundle.desktopId.empty() && bundle.entryPath == target.planned->entryPath);
                        if (isFree(index) && isSame && bundle.directory == target.directory
                            && (!mustHaveName || bundle.name == plainName(*target.planned))) {
                            match(target, index);
                        }
                    }
                }
            }
        }

        void matchAcrossDirectories()
        {
            for (Target& target : targets_) {
                for (std::size_t index = 0; index < found_.size() && target.found == kNone; ++index) {
                    if (isFree(index) && found_[index].kind == target.planned->kind
                        && found_[index].desktopId == target.planned->desktopId) {
                        match(target, index);
                    }
                }
            }
        }

        static std::string plainName(const PlannedBundle& planned)
        {
            return bundleName(planned.title, {}, extensionOf(planned.kind));
        }

        // Who has the plain name keeps it when another bundle of that title comes: a picked application must not
        // turn into another one.
        int rank(const Target& target) const
        {
            if (target.planned->isFirstOfItsName)
                return 0;
            const bool hasPlainName = target.found != kNone
                && found_[target.found].path() == target.directory + '/' + plainName(*target.planned);
            return hasPlainName ? 1 : 2;
        }

        void assignNames()
        {
            std::stable_sort(targets_.begin(), targets_.end(), [&](const Target& a, const Target& b) {
                const int rankA = rank(a);
                const int rankB = rank(b);
                return rankA != rankB ? rankA < rankB : a.planned->desktopId < b.planned->desktopId;
            });
            for (Target& target : targets_) {
                const std::string_view extension = extensionOf(target.planned->kind);
                std::string distinction;
                int number = 1;
                do {
                    target.name = bundleName(target.planned->title, distinction, extension);
                    distinction = target.planned->desktopId;
                    if (number > 1)
                        distinction.insert(0, std::to_string(number) + ' ');
                    ++number;
                } while (!taken_.insert(target.path()).second);
            }
        }

        // Two bundles may change names with each other, so each one that is in the way of another goes aside first.
        void moveAside()
        {
            std::set<std::string> wanted;
            for (const Target& target : targets_)
                wanted.insert(target.path());
            for (const Target& target : targets_) {
                if (target.found == kNone)
                    continue;
                FoundBundle& bundle = found_[target.found];
                if (bundle.path() == target.path() || !wanted.contains(bundle.path()))
                    continue;
                const std::string name = std::string(kUnfinishedPrefix) + std::to_string(target.found);
                if (std::rename(bundle.path().c_str(), (bundle.directory + '/' + name).c_str()) == 0)
                    bundle.name = name;
                else
                    fail("couldn't rename", bundle.path());
            }
        }

        void bring(const Target& target)
        {
            const PlannedBundle& planned = *target.planned;
            if (target.found == kNone) {
                make(target);
                return;
            }
            const FoundBundle& bundle = found_[target.found];
            if (bundle.path() != target.path() && std::rename(bundle.path().c_str(), target.path().c_str()) != 0) {
                fail("couldn't rename", bundle.path());
                return;
            }
            if (bundle.entryPath != planned.entryPath)
                replaceLink(target);
            if (bundle.info != planned.info)
                note(replaceRegenerableFile(infoPath(target.path()), planned.info));
        }

        void replaceLink(const Target& target)
        {
            const std::string link = entryLinkPath(target.path());
            const std::string unfinished = link + ".new";
            unlink(unfinished.c_str());
            if (symlink(target.planned->entryPath.c_str(), unfinished.c_str()) != 0
                || std::rename(unfinished.c_str(), link.c_str()) != 0) {
                fail("couldn't link", link);
            }
        }

        void make(const Target& target)
        {
            std::string unfinished = target.directory + '/' + std::string(kUnfinishedPrefix) + "XXXXXX";
            if (!mkdtemp(unfinished.data()) || mkdir((unfinished + "/Contents").c_str(), 0700) != 0) {
                fail("couldn't make", target.path());
                return;
            }
            const Result<void> written = replaceRegenerableFile(infoPath(unfinished), target.planned->info);
            if (!written) {
                errors_.push_back(written.error());
            } else if (symlink(target.planned->entryPath.c_str(), entryLinkPath(unfinished).c_str()) != 0
                       || std::rename(unfinished.c_str(), target.path().c_str()) != 0) {
                fail("couldn't make", target.path());
            } else {
                return;
            }
            remove(unfinished);
        }

        void remove(const std::string& bundle)
        {
            unlink((infoPath(bundle) + ".new").c_str());
            unlink(infoPath(bundle).c_str());
            unlink((entryLinkPath(bundle) + ".new").c_str());
            unlink(entryLinkPath(bundle).c_str());
            rmdir((bundle + "/Contents").c_str());
            if (rmdir(bundle.c_str()) != 0)
                fail("couldn't remove", bundle);
        }

        void fail(const char* what, const std::string& path) { errors_.push_back(Error::fromErrno(errno, what, path)); }
        void note(const Result<void>& result)
        {
            if (!result)
                errors_.push_back(result.error());
        }

        const BundleStore& store_;
        std::vector<Target> targets_;
        std::vector<FoundBundle> found_;
        std::set<std::size_t> matched_;
        // Paths that no further bundle can have.
        std::set<std::string> taken_;
        std::vector<Error> errors_;
    };

    std::optional<Error> makeDirectories(const std::string& directory)
    {
        struct stat status { };
        if (stat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
            return std::nullopt;
        const std::string_view above = path::deletingLastPathComponent(directory);
        if (above.size() > 1) {
            if (auto error = makeDirectories(std::string(above)))
                return error;
        }
        if (mkdir(directory.c_str(), 0700) != 0)
            return Error::fromErrno(errno, "couldn't make the directory", directory);
        return std::nullopt;
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

std::vector<Error> BundleStore::bringTo(std::vector<PlannedBundle>& plan)
{
    std::vector<Error> errors;
    for (const std::string& directory : directories()) {
        if (auto error = makeDirectories(directory))
            errors.push_back(*error);
    }
    // Without its directory each bundle would only add a complaint of the same kind.
    return errors.empty() ? Update(*this, plan).run() : errors;
}

std::optional<std::string> BundleStore::entryOfBundle(const std::string& path) const
{
    return path.starts_with(root_ + '/') ? linkText(entryLinkPath(path)) : std::nullopt;
}

} // namespace quillbox
