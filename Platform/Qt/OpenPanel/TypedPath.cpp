#include "TypedPath.h"

#include "CanonicalPath.h"
#include "FileManager.h"
#include "Unicode.h"

#include <algorithm>
#include <optional>

namespace quillbox {

namespace {

    constexpr QChar kSlash('/');

    QString shownName(std::string_view name)
    {
        return QString::fromStdString(unicode::displayText(name));
    }

    std::optional<DirectoryListing> listingOf(const std::string& directory)
    {
        auto listing = FileManager::defaultManager().contentsOfDirectory(URL::fileURLWithPath(directory),
                                                                         DirectoryEnumerationOptions::none);
        return listing ? std::optional(std::move(*listing)) : std::nullopt;
    }

    // The bytes that a typed name stands for, where it is the name of an entry of `parent`.
    std::string typedName(const QString& shown, const std::string& parent)
    {
        std::string plain = shown.toStdString();
        if (!shown.contains(QChar(QChar::ReplacementCharacter)))
            return plain;
        if (const auto listing = listingOf(parent)) {
            for (std::size_t i = 0; i < listing->count(); ++i) {
                if (shownName(listing->name(i)) == shown)
                    return std::string(listing->name(i));
            }
        }
        return plain;
    }

    std::string homeDirectory()
    {
        return FileManager::defaultManager().homeDirectoryForCurrentUser().path();
    }

} // namespace

QString typedText(const std::string& path)
{
    return shownName(path);
}

std::string typedPath(const QString& text, const std::string& directory)
{
    std::string path = "/";
    QStringList names = text.split(kSlash, Qt::SkipEmptyParts);
    // The end of `directory` that follows the part of it which the names have named so far; none once they name
    // something else.
    std::optional<std::string> rest = directory;
    if (!text.startsWith(kSlash)) {
        const bool isInHome = !names.isEmpty() && names.front() == QStringLiteral("~");
        if (isInHome)
            names.removeFirst();
        path = isInHome ? homeDirectory() : directory;
        rest.reset();
    }
    for (const QString& name : names) {
        if (name == QStringLiteral("."))
            continue;
        if (name == QStringLiteral("..")) {
            // As for the kernel, this is what is above the directory that a link leads to.
            const Result<std::string> canonical = canonicalPath(path);
            path = path::deletingLastPathComponent(canonical ? *canonical : path);
            rest.reset();
            continue;
        }
        std::string next;
        if (rest) {
            const std::size_t start = rest->find_first_not_of('/');
            const std::size_t stop =
                std::min(start == std::string::npos ? start : rest->find('/', start), rest->size());
            next = start == std::string::npos ? std::string() : rest->substr(start, stop - start);
            rest = shownName(next) == name ? std::optional(rest->substr(stop)) : std::nullopt;
        }
        path = path::appending(path, rest ? next : typedName(name, path));
    }
    return path;
}

QStringList typedContinuations(const QString& text, const std::string& directory)
{
    const qsizetype nameStart = text.lastIndexOf(kSlash) + 1;
    const QString begun = text.left(nameStart);
    const bool isHiddenWanted = text.mid(nameStart).startsWith(QChar('.'));
    const auto listing = listingOf(typedPath(begun, directory));
    if (!listing)
        return {};
    QStringList all;
    for (std::size_t i = 0; i < listing->count(); ++i) {
        if (listing->isHidden(listing->name(i)) != isHiddenWanted)
            continue;
        const bool isDirectory = listing->kind(i) == DirectoryListing::EntryKind::directory;
        all.append(begun + shownName(listing->name(i)) + (isDirectory ? QString(kSlash) : QString()));
    }
    all.sort(Qt::CaseInsensitive);
    return all;
}

} // namespace quillbox
