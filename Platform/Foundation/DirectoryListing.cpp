#include "DirectoryListing.h"

#include "AliasFile.h"
#include "Check.h"
#include "HiddenNames.h"
#include "URL.h"

#include <limits>

namespace quillbox {

DirectoryListing::DirectoryListing(std::string directoryPath) : directoryPath_(std::move(directoryPath)) { }

std::string_view DirectoryListing::name(std::size_t index) const
{
    const Entry& entry = entries_[index];
    return std::string_view(names_).substr(entry.offset, entry.length);
}

std::string DirectoryListing::path(std::size_t index) const
{
    std::string path;
    getPath(index, path);
    return path;
}

void DirectoryListing::getPath(std::size_t index, std::string& path) const
{
    const std::string_view entryName = name(index);
    path.reserve(directoryPath_.size() + 1 + entryName.size());
    path = directoryPath_;
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    if (!path.empty() && path != "/")
        path += '/';
    path += entryName;
}

void DirectoryListing::append(std::string_view name, EntryKind kind)
{
    QB_CHECK(name.size() <= std::numeric_limits<std::uint16_t>::max()
             && names_.size() <= std::numeric_limits<std::uint32_t>::max());
    entries_.push_back(
        Entry { static_cast<std::uint32_t>(names_.size()), static_cast<std::uint16_t>(name.size()), kind });
    names_ += name;
}

void DirectoryListing::shrinkToFit()
{
    names_.shrink_to_fit();
    entries_.shrink_to_fit();
}

bool DirectoryListing::isHidden(std::string_view name) const
{
    return isDotName(name) || (!hiddenNames_.empty() && hiddenNames_.contains(std::string(name)));
}

std::optional<URLResourceValues> DirectoryListing::knownResourceValues(std::size_t index) const
{
    const EntryKind entryKind = kind(index);
    const std::string_view entryName = name(index);
    if (!isSearchable_ || entryKind == EntryKind::unknown || hasAliasSuffix(entryName))
        return std::nullopt;
    const bool isDirectory = entryKind == EntryKind::directory;
    const bool isPackage = isDirectory && isPackageName(entryName);
    URLResourceValues values;
    values.isHidden = isHidden(entryName);
    values.isDirectory = isDirectory;
    values.isPackage = isPackage;
    values.hasHiddenExtension = isPackage && packageHidesExtension(entryName);
    values.isAliasFile = false;
    values.isSymbolicLink = entryKind == EntryKind::symbolicLink;
    return values;
}

Result<URLResourceValues> DirectoryListing::resourceValues(std::size_t index, URLResourceKey keys) const
{
    Result<URLResourceValues> values =
        URL::fileURLWithPath(path(index)).resourceValues(without(keys, URLResourceKey::isHidden));
    if (values && contains(keys, URLResourceKey::isHidden))
        values->isHidden = isHidden(name(index));
    return values;
}

} // namespace quillbox
