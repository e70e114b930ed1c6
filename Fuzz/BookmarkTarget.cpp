#include "FuzzTarget.h"

#include "Bookmark.h"
#include "Check.h"
#include "URL.h"

namespace quillbox {

namespace {

    void appendChecksum(Data& bytes)
    {
        std::uint32_t crc = 0xFFFFFFFF;
        for (const std::uint8_t byte : bytes) {
            crc ^= byte;
            for (int bit = 0; bit < 8; ++bit)
                crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0);
        }
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes.push_back(static_cast<std::uint8_t>(~crc >> static_cast<unsigned>(shift)));
    }

    // Makes a few files to which the bookmarks may refer.
    std::string directoryWithFiles()
    {
        static const std::string directory = [] {
            for (const char* name : { "bookmarks/a", "bookmarks/b", "bookmarks/below/c" })
                scratchDirectory().writeFile(name, name);
            return scratchDirectory().path("bookmarks");
        }();
        return directory;
    }

    void resolve(const Data& bytes)
    {
        bool isStale = false;
        const Result<URL> url = URL::resolvingBookmarkData(bytes, isStale);
        QB_CHECK(!url || url->path().starts_with('/'));
    }

    // Reads the bytes of a bookmark without its checksum, which random changes would never match.
    void readBookmark(const Data& bytes)
    {
        Data withChecksum = bytes;
        appendChecksum(withChecksum);
        Result<Bookmark> bookmark = Bookmark::decode(withChecksum);
        if (!bookmark)
            return;
        const Data encoded = bookmark->encoded();
        const Result<Bookmark> again = Bookmark::decode(encoded);
        QB_CHECK(again && *again == *bookmark && again->encoded() == encoded);

        // The path is in our own directory, so that the search does not go through the whole system.
        const bool isHere = bookmark->path.size() % 2 == 0;
        bookmark->path = directoryWithFiles() + (isHere ? "/a" : "/below/not here");
        resolve(bookmark->encoded());
        Result<Bookmark> ours = Bookmark::ofPath(directoryWithFiles() + "/b");
        QB_CHECK(ours);
        bookmark->fileSystemUUID = ours->fileSystemUUID;
        bookmark->identity.inode = ours->identity.inode;
        resolve(bookmark->encoded());
    }

    const FuzzTarget kTarget("bookmark", readBookmark);

} // namespace

} // namespace quillbox
