#include "Bookmark.h"

#include "BookmarkSearch.h"
#include "ByteFields.h"
#include "MountInquiry.h"
#include "MountTable.h"
#include "URL.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>

namespace quillbox {

namespace {

    // The bytes, version 1, all numbers big-endian:
    //
    //     4        the letters "QBbk"
    //     1        the version, 1
    //     1        bits: 1 the entry is a directory, 2 the URL was made with a trailing slash, 4 a birth time
    //              is known; the others are 0
    //     4 + n    length and bytes of the absolute path, as the file system has them
    //     4 + n    length and text of the file system's UUID; empty where it is not known
    //     4, 4     major and minor number of the device: a hint, since they may change at every boot
    //     8        the inode
    //     8, 4     seconds since 1970 (signed) and nanoseconds of the birth time; 0 where it is not known
    //     4 + n    length and bytes of the file handle (the first four are its type); empty where there is none
    //              that lasts
    //     4        CRC-32 (the one of zip files) of everything before it
    //
    // Nothing may follow.
    constexpr std::string_view kMagic = "QBbk";
    constexpr std::uint8_t kVersion = 1;
    constexpr unsigned kIsDirectory = 1;
    constexpr unsigned kHasDirectoryPath = 2;
    constexpr unsigned kHasBirth = 4;
    constexpr unsigned kAllBits = 7;
    constexpr std::size_t kChecksumSize = 4;

    std::uint32_t crc32(const std::uint8_t* bytes, std::size_t count)
    {
        static constexpr std::array<std::uint32_t, 256> kTable = [] {
            std::array<std::uint32_t, 256> table {};
            for (std::uint32_t i = 0; i < 256; ++i) {
                std::uint32_t value = i;
                for (int bit = 0; bit < 8; ++bit)
                    value = (value & 1U) != 0 ? 0xEDB88320U ^ (value >> 1U) : value >> 1U;
                table[i] = value;
            }
            return table;
        }();
        std::uint32_t crc = 0xFFFFFFFFU;
        for (std::size_t i = 0; i < count; ++i)
            crc = kTable[(crc ^ bytes[i]) & 0xFFU] ^ (crc >> 8U);
        return ~crc;
    }

    // Returns the file handle's type and bytes; empty if the file system has none.
    Data handleOfPath(const std::string& path)
    {
        constexpr std::size_t kMaximumHandle = MAX_HANDLE_SZ;
        alignas(file_handle) std::array<unsigned char, sizeof(file_handle) + kMaximumHandle> storage {};
        auto* handle = reinterpret_cast<file_handle*>(storage.data());
        handle->handle_bytes = kMaximumHandle;
        int mountId = 0;
        if (::name_to_handle_at(AT_FDCWD, path.c_str(), handle, &mountId, 0) != 0
            || handle->handle_bytes > kMaximumHandle)
            return {};
        // These file systems number their files anew at every mounting, so their handles don't last.
        constexpr std::array<std::string_view, 3> kPassing { "exfat", "msdos", "vfat" };
        const MountTable::Mount* mount = MountTable::current().find(static_cast<std::uint64_t>(mountId));
        if (mount
            && (mount->type.starts_with("fuse")
                || std::find(kPassing.begin(), kPassing.end(), mount->type) != kPassing.end()))
            return {};
        FieldWriter writer;
        writer.number(static_cast<std::uint32_t>(handle->handle_type), 4);
        const unsigned char* first = storage.data() + offsetof(file_handle, f_handle);
        writer.bytes.insert(writer.bytes.end(), first, first + handle->handle_bytes);
        return writer.bytes;
    }

    URL urlOf(const std::string& path, const Bookmark& bookmark)
    {
        return URL::fileURLWithPath(bookmark.hasDirectoryPath && path != "/" ? path + "/" : path);
    }

} // namespace

bool Bookmark::isSameFile(const Bookmark& other) const
{
    if (identity.inode != other.identity.inode)
        return false;
    const bool knowBirths = identity.birth && other.identity.birth;
    if (knowBirths && identity.birth != other.identity.birth)
        return false;
    if (!handle.empty() && !other.handle.empty() && handle != other.handle)
        return false;
    if (!fileSystemUUID.empty() && !other.fileSystemUUID.empty())
        return fileSystemUUID == other.fileSystemUUID;
    // Device numbers differ from boot to boot, births don't.
    return knowBirths
        || (identity.deviceMajor == other.identity.deviceMajor && identity.deviceMinor == other.identity.deviceMinor);
}

Result<Bookmark> Bookmark::ofPath(const std::string& path)
{
    if (const auto answer = askInTime(FileQuestion::Kind::bookmark, path)) {
        if (answer->error != 0)
            return Error::fromErrno(answer->error, "couldn't look at", path);
        return decode(Data(answer->bytes.begin(), answer->bytes.end()));
    }
    const Result<FileStatus> file = lookAtFile(path);
    if (!file)
        return file.error();
    Bookmark bookmark;
    bookmark.path = path;
    bookmark.isDirectory = file->isDirectory;
    const MountTable& table = MountTable::current();
    if (const MountTable::Mount* mount = table.find(file->mountId))
        bookmark.fileSystemUUID = table.fileSystemUUID(*mount);
    bookmark.identity = file->identity;
    bookmark.handle = handleOfPath(path);
    return bookmark;
}

Data Bookmark::encoded() const
{
    FieldWriter writer;
    writer.bytes.assign(kMagic.begin(), kMagic.end());
    writer.number(kVersion, 1);
    writer.number((isDirectory ? kIsDirectory : 0U) | (hasDirectoryPath ? kHasDirectoryPath : 0U)
                      | (identity.birth ? kHasBirth : 0U),
                  1);
    writer.field(path);
    writer.field(fileSystemUUID);
    writer.number(identity.deviceMajor, 4);
    writer.number(identity.deviceMinor, 4);
    writer.number(identity.inode, 8);
    const FileIdentity::Time birth = identity.birth.value_or(FileIdentity::Time {});
    writer.number(static_cast<std::uint64_t>(birth.seconds), 8);
    writer.number(birth.nanoseconds, 4);
    writer.field(handle);
    writer.number(crc32(writer.bytes.data(), writer.bytes.size()), 4);
    return writer.bytes;
}

Result<Bookmark> Bookmark::decode(const Data& bytes)
{
    const Error damaged { EINVAL, "couldn't read the bookmark: its bytes are damaged", {} };
    if (bytes.size() < kMagic.size() + 1 + kChecksumSize
        || std::memcmp(bytes.data(), kMagic.data(), kMagic.size()) != 0)
        return damaged;
    if (const int version = bytes[kMagic.size()]; version != kVersion)
        return Error { EINVAL, "couldn't read the bookmark: version " + std::to_string(version) + " is unknown", {} };
    const std::size_t end = bytes.size() - kChecksumSize;
    if (FieldReader(bytes, end, bytes.size()).number(4) != crc32(bytes.data(), end))
        return damaged;

    FieldReader reader(bytes, kMagic.size() + 1, end);
    Bookmark bookmark;
    const auto bits = static_cast<unsigned>(reader.number(1));
    bookmark.isDirectory = (bits & kIsDirectory) != 0;
    bookmark.hasDirectoryPath = (bits & kHasDirectoryPath) != 0;
    bookmark.path = reader.field<std::string>();
    bookmark.fileSystemUUID = reader.field<std::string>();
    bookmark.identity.deviceMajor = static_cast<std::uint32_t>(reader.number(4));
    bookmark.identity.deviceMinor = static_cast<std::uint32_t>(reader.number(4));
    bookmark.identity.inode = reader.number(8);
    FileIdentity::Time birth;
    birth.seconds = static_cast<std::int64_t>(reader.number(8));
    birth.nanoseconds = static_cast<std::uint32_t>(reader.number(4));
    if ((bits & kHasBirth) != 0)
        bookmark.identity.birth = birth;
    bookmark.handle = reader.field<Data>();
    const bool isPathUsable = bookmark.path.starts_with('/') && bookmark.path.find('\0') == std::string::npos;
    if (reader.isDamaged() || !reader.isAtEnd() || bits > kAllBits || !isPathUsable)
        return damaged;
    return bookmark;
}

Result<Data> URL::bookmarkData() const
{
    Result<Bookmark> bookmark = Bookmark::ofPath(path_);
    if (!bookmark)
        return bookmark.error();
    bookmark->hasDirectoryPath = hasDirectoryPath_;
    return bookmark->encoded();
}

Result<URL> URL::resolvingBookmarkData(const Data& data, bool& isStale)
{
    const Result<Bookmark> bookmark = Bookmark::decode(data);
    if (!bookmark)
        return bookmark.error();
    const Result<Bookmark> present = Bookmark::ofPath(bookmark->path);
    if (present) {
        if (!present->isSameFile(*bookmark))
            isStale = true;
        return urlOf(bookmark->path, *bookmark);
    }
    if (present.error().code != ENOENT && present.error().code != ENOTDIR)
        return present.error();
    if (const std::optional<std::string> found = findMovedFile(*bookmark)) {
        isStale = true;
        return urlOf(*found, *bookmark);
    }
    return present.error();
}

} // namespace quillbox
