#pragma once

#include "BundleStore.h"
#include "FoundBundle.h"

#include <cstddef>
#include <limits>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace quillbox {

// Changes one store to one plan; BundleStore makes and uses it once. For each planned bundle it finds the existing one
// that becomes it, then gives all of them their names, and finally removes, renames and makes bundles. Its work grows
// with the number of bundles, even if all have the same title.
class BundleUpdate {
public:
    // `directories` has the directory of each planned bundle at the same index. The plan must outlive the update.
    BundleUpdate(FoundBundles found, const std::vector<PlannedBundle>& plan,
                 const std::vector<std::string>& directories, const UnreadSources& unread);

    BundleStore::Outcome run();

private:
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    struct Target {
        const PlannedBundle* planned;
        std::string directory;
        std::string name {};
        // Index of the existing bundle that becomes this one; kNone if it has to be made.
        std::size_t found = kNone;

        std::string path() const { return directory + '/' + name; }
    };
    // Indexes of existing bundles, by the key by which they are matched.
    using Candidates = std::unordered_map<std::string, std::vector<std::size_t>>;

    void keepUncertain(const UnreadSources& unread);
    void match(Target& target, std::size_t index);
    void matchFirstFree(Target& target, Candidates& candidates, const std::string& key);
    void matchByName();
    void matchWithinDirectories();
    void matchAcrossDirectories();
    int nameRank(const Target& target) const;
    void assignNames();
    bool putAside(FoundBundle& bundle);
    void removeUnwanted();
    void moveOutOfTheWay();
    void bring(const Target& target);
    bool rename(const FoundBundle& bundle, const Target& target);
    void replaceLink(const Target& target);
    bool make(const Target& target);
    void takeApart(const std::string& bundle);
    void addInstalled(const Target& target, const std::string& path);
    void fail(const char* what, const std::string& path);

    std::vector<Target> targets_;
    std::vector<FoundBundle> found_;
    std::set<std::size_t> matched_;
    // Paths that no other bundle may have.
    std::set<std::string> taken_;
    unsigned nextAsideNumber_ = 0;
    BundleStore::Outcome outcome_;
};

} // namespace quillbox
