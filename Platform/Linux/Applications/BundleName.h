#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quillbox {

// The file name of a bundle that people know as `title` (valid UTF-8): what a file name can't have is replaced by what
// looks like it, and the title is cut at a character's end where the whole would not fit. `distinction` is added in
// brackets, after a blank, where another bundle has the plain name; empty for none. `extension` with its dot.
std::string bundleName(std::string_view title, std::string_view distinction, std::string_view extension);

// Gives the bundles of an update names, of which each is used once in its directory. With any number of bundles of one
// title it tries three names a bundle at most: the plain one, one with the desktop id, one with a number.
class BundleNames {
public:
    // Takes the path for a bundle; false where it is taken already.
    using Take = std::function<bool(const std::string& path)>;

    explicit BundleNames(Take take) : take_(std::move(take)) { }

    std::string nameIn(const std::string& directory, std::string_view title, std::string_view desktopId,
                       std::string_view extension);

private:
    Take take_;
    // The number that the next bundle gets whose path would be this one without a number.
    std::unordered_map<std::string, unsigned> nextNumber_;
};

} // namespace quillbox
