#include "FileAnswers.h"

#include "Bookmark.h"
#include "BookmarkSearch.h"
#include "ByteFields.h"
#include "CanonicalPath.h"
#include "FileContents.h"
#include "FileManager.h"
#include "PathStatus.h"
#include "URL.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>

namespace quillbox {

namespace {

    using Values = URLResourceValues;
    using Member = std::optional<bool> Values::*;
    constexpr std::array<Member, 7> kMembers { &Values::isHidden,    &Values::isDirectory,
                                               &Values::isPackage,   &Values::hasHiddenExtension,
                                               &Values::isAliasFile, &Values::isSymbolicLink,
                                               &Values::isVolume };

    FileAnswer failed(int error)
    {
        return { error == 0 ? EPROTO : error, 0, {} };
    }

    // Encodes each value in two bits: whether it is there, and what it is.
    FileAnswer encoded(const Values& values)
    {
        FileAnswer answer;
        for (std::size_t i = 0; i < kMembers.size(); ++i) {
            if (const std::optional<bool>& value = values.*kMembers[i])
                answer.number |= (*value ? 3ULL : 1ULL) << (2 * i);
        }
        return answer;
    }

    // Writes each entry's kind as a letter and its name, which has no NUL in it. After an empty name follow the names
    // that the .hidden file lists.
    FileAnswer encoded(const DirectoryListing& listing)
    {
        FileAnswer answer { 0, listing.isSearchable() ? 1U : 0U, {} };
        const auto add = [&](char kind, std::string_view name) {
            answer.bytes += kind;
            answer.bytes += name;
            answer.bytes += '\0';
        };
        for (std::size_t i = 0; i < listing.count(); ++i)
            add(static_cast<char>('0' + static_cast<int>(listing.kind(i))), listing.name(i));
        add('.', {});
        for (const std::string& name : listing.namesToldHidden())
            add('h', name);
        return answer;
    }

    FileAnswer encoded(const FileStatus& status)
    {
        FieldWriter writer;
        writer.number(status.identity.deviceMajor, 4);
        writer.number(status.identity.deviceMinor, 4);
        writer.number(status.identity.inode, 8);
        writer.number(status.mountId.value_or(0), 8);
        unsigned bits = (status.isDirectory ? 1U : 0U) | (status.mountId ? 2U : 0U);
        unsigned bit = 4;
        for (const auto& time : { status.identity.birth, status.modified, status.changed }) {
            writer.number(static_cast<std::uint64_t>(time ? time->seconds : 0), 8);
            writer.number(time ? time->nanoseconds : 0, 4);
            bits |= time ? bit : 0;
            bit *= 2;
        }
        return { 0, bits, std::string(writer.bytes.begin(), writer.bytes.end()) };
    }

    FileAnswer encoded(const Data& bytes)
    {
        return { 0, 0, std::string(bytes.begin(), bytes.end()) };
    }

    FileAnswer statusOf(const FileQuestion& question)
    {
        const auto status =
            statusOfPath(question.path, question.number != 0 ? LastLink::followed : LastLink::notFollowed);
        if (!status)
            return failed(status.error().code);
        std::string bytes(sizeof *status, '\0');
        std::memcpy(bytes.data(), &*status, bytes.size());
        return { 0, 0, std::move(bytes) };
    }

    FileAnswer encoded(const std::string& text)
    {
        return { 0, 0, text };
    }

    template <class Value>
    FileAnswer encodedResult(const Result<Value>& result)
    {
        return result ? encoded(*result) : failed(result.error().code);
    }

    FileAnswer movedFile(const FileQuestion& question)
    {
        const Result<Bookmark> wanted = Bookmark::decode(Data(question.bytes.begin(), question.bytes.end()));
        if (!wanted)
            return failed(EPROTO);
        std::optional<std::string> path = findMovedFileAround(*wanted, question.path);
        return path ? FileAnswer { 0, 0, std::move(*path) } : failed(ENOENT);
    }

} // namespace

FileAnswer answered(const FileQuestion& question)
{
    using Kind = FileQuestion::Kind;
    if (question.path.empty() || question.path.find('\0') != std::string::npos)
        return failed(ENOENT);
    const URL url = URL::fileURLWithPath(question.path);
    switch (question.kind) {
    case Kind::resourceValues:
        return encodedResult(url.resourceValues(static_cast<URLResourceKey>(question.number)));
    case Kind::listing:
        return encodedResult(FileManager().contentsOfDirectory(
            url,
            question.number != 0 ? DirectoryEnumerationOptions::skipsHiddenFiles : DirectoryEnumerationOptions::none));
    case Kind::linkTarget:
        return encodedResult(FileManager().destinationOfSymbolicLink(question.path));
    case Kind::identity:
        return encodedResult(lookAtFile(question.path));
    case Kind::status:
        return statusOf(question);
    case Kind::access:
        return isAccessible(question.path, static_cast<int>(question.number)) ? FileAnswer {} : failed(EACCES);
    case Kind::bookmark: {
        const Result<Bookmark> bookmark = Bookmark::ofPath(question.path);
        return bookmark ? encoded(bookmark->encoded()) : failed(bookmark.error().code);
    }
    case Kind::contents:
        return encodedResult(readFile(question.path, static_cast<std::size_t>(question.number)));
    case Kind::beginning:
        return { 0, 0, readSmallFile(AT_FDCWD, question.path.c_str(), static_cast<std::size_t>(question.number)) };
    case Kind::canonicalPath:
        return encodedResult(canonicalPath(question.path));
    case Kind::movedFile:
        return movedFile(question);
    case Kind::defaultApplication:
        break;
    }
    return failed(EPROTO);
}

Result<URLResourceValues> answer::resourceValues(const FileAnswer& answer, const std::string& path)
{
    if (answer.error != 0)
        return Error::fromErrno(answer.error, "couldn't look at", path);
    Values values;
    for (std::size_t i = 0; i < kMembers.size(); ++i) {
        if (const std::uint64_t bits = (answer.number >> (2 * i)) & 3U; bits != 0)
            values.*kMembers[i] = bits == 3;
    }
    return values;
}

Result<DirectoryListing> answer::listing(const FileAnswer& answer, const std::string& path)
{
    if (answer.error != 0)
        return Error::fromErrno(answer.error, "couldn't list", path);
    DirectoryListing listing(path);
    listing.setIsSearchable(answer.number != 0);
    std::unordered_set<std::string> hidden;
    bool isHiddenPart = false;
    std::string_view rest = answer.bytes;
    while (!rest.empty()) {
        const std::size_t end = rest.find('\0');
        if (end == std::string_view::npos || end == 0)
            return Error::fromErrno(EPROTO, "couldn't list", path);
        const std::string_view name = rest.substr(1, end - 1);
        if (isHiddenPart)
            hidden.emplace(name);
        else if (name.empty())
            isHiddenPart = true;
        else
            listing.append(name, static_cast<DirectoryListing::EntryKind>(rest.front() - '0'));
        rest.remove_prefix(end + 1);
    }
    listing.setNamesToldHidden(std::move(hidden));
    return listing;
}

Result<FileStatus> answer::identity(const FileAnswer& answer, const std::string& path)
{
    const Data bytes(answer.bytes.begin(), answer.bytes.end());
    FieldReader reader(bytes);
    FileStatus status;
    status.identity.deviceMajor = static_cast<std::uint32_t>(reader.number(4));
    status.identity.deviceMinor = static_cast<std::uint32_t>(reader.number(4));
    status.identity.inode = reader.number(8);
    const std::uint64_t mountId = reader.number(8);
    if ((answer.number & 2U) != 0)
        status.mountId = mountId;
    unsigned bit = 4;
    for (auto* time : { &status.identity.birth, &status.modified, &status.changed }) {
        const auto seconds = static_cast<std::int64_t>(reader.number(8));
        const auto nanoseconds = static_cast<std::uint32_t>(reader.number(4));
        if ((answer.number & bit) != 0)
            *time = FileIdentity::Time { seconds, nanoseconds };
        bit *= 2;
    }
    if (answer.error != 0 || reader.isDamaged())
        return Error::fromErrno(answer.error != 0 ? answer.error : EPROTO, "couldn't look at", path);
    status.isDirectory = (answer.number & 1U) != 0;
    return status;
}

Result<struct stat> answer::status(const FileAnswer& answer, const std::string& path)
{
    struct stat status { };
    if (answer.error != 0 || answer.bytes.size() != sizeof status)
        return Error::fromErrno(answer.error != 0 ? answer.error : EPROTO, "couldn't look at", path);
    std::memcpy(&status, answer.bytes.data(), sizeof status);
    return status;
}

Result<std::string> answer::text(const FileAnswer& answer, const char* what, const std::string& path)
{
    if (answer.error != 0)
        return Error::fromErrno(answer.error, what, path);
    return answer.bytes;
}

} // namespace quillbox
