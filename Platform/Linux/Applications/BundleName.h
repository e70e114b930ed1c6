#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quillbox {

// Returns the file name of a bundle with this title (valid UTF-8). Characters that a file name can't have are replaced
// by similar ones, and a title that is too long is cut between two characters. `distinction`, unless it is empty, is
// added in brackets after a blank, for a bundle whose plain name belongs to another one. `extension` includes the dot.
std::string bundleName(std::string_view title, std::string_view distinction, std::string_view extension);

// Gives the bundles of one update names, each of which is used once in its directory. However many bundles have the
// same title, it tries at most three names for each: the plain one, one with the desktop id, and one with a number.
class BundleNames {
public:
    // Reserves the path for a bundle. Returns false if it is taken already.
    using Take = std::function<bool(const std::string& path)>;

    explicit BundleNames(Take take) : take_(std::move(take)) { }

    std::string nameIn(const std::string& directory, std::string_view title, std::string_view desktopId,
                       std::string_view extension);

private:
    Take take_;
    // The number for the next bundle that needs one. The key is the path that the bundle would have without a number.
    std::unordered_map<std::string, unsigned> nextNumber_;
};

} // namespace quillbox
