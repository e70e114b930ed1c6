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

    // As for the kernel, ".." is what is above the directory that a link leads to.
    std::string directoryAbove(const std::string& path)
    {
        const Result<std::string> canonical = canonicalPath(path);
        return std::string(path::deletingLastPathComponent(canonical ? *canonical : path));
    }

    std::string pathOfURL(const URL& url)
    {
        std::string path = "/";
        std::string_view rest = url.path();
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('/'), rest.size());
            const std::string_view name = rest.substr(0, end);
            rest.remove_prefix(std::min(end + 1, rest.size()));
            if (name == "..")
                path = directoryAbove(path);
            else if (!name.empty() && name != ".")
                path = path::appending(path, name);
        }
        return path;
    }

    // What a text without blanks around it stands for.
    std::string barePath(const QString& text, const std::string& directory)
    {
        if (const auto url = URL::fromString(text.toStdString()))
            return pathOfURL(*url);
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
                path = directoryAbove(path);
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

} // namespace

QString typedText(const std::string& path)
{
    return shownName(path);
}

std::string typedPath(const QString& text, const std::string& directory)
{
    const QString bare = text.trimmed();
    if (bare == text)
        return barePath(text, directory);
    std::string asTyped = barePath(text, directory);
    const bool isThere = !bare.isEmpty() && FileManager::defaultManager().fileExists(asTyped);
    return isThere ? asTyped : barePath(bare, directory);
}

QStringList typedContinuations(const QString& text, const std::string& directory, bool showsHidden)
{
    if (URL::fromString(text.toStdString()))
        return {};
    const qsizetype nameStart = text.lastIndexOf(kSlash) + 1;
    const QString begun = text.left(nameStart);
    const bool isDotTyped = text.mid(nameStart).startsWith(QChar('.'));
    const auto listing = listingOf(typedPath(begun, directory));
    if (!listing)
        return {};
    QStringList all;
    for (std::size_t i = 0; i < listing->count(); ++i) {
        const std::string_view name = listing->name(i);
        if (!showsHidden && listing->isHidden(name) && !(isDotTyped && name.starts_with('.')))
            continue;
        const bool isDirectory = listing->kind(i) == DirectoryListing::EntryKind::directory;
        all.append(begun + shownName(name) + (isDirectory ? QString(kSlash) : QString()));
    }
    all.sort(Qt::CaseInsensitive);
    return all;
}

} // namespace quillbox
