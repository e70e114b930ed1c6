"""Writes and reads bookmarks in the form in which Quillbox stores them (see Platform/Foundation/Bookmark.cpp)."""

import struct
import zlib

IS_DIRECTORY = 1


def bookmark_of_path(path, is_directory=True):
    """Returns a bookmark that knows the path of a file, but not its identity. It resolves as stale, and the program
    that resolves it replaces it by a complete one."""
    body = (b"QBbk" + bytes([1, IS_DIRECTORY if is_directory else 0])
            + field(path) + field(b"") + struct.pack(">IIQqI", 0, 0, 0, 0, 0) + field(b""))
    return body + struct.pack(">I", zlib.crc32(body))


def path_and_inode(bookmark):
    """Returns the path and the inode in a bookmark. Raises ValueError if it is damaged."""
    body = bookmark[:-4]
    if bookmark[:5] != b"QBbk\1" or struct.pack(">I", zlib.crc32(body)) != bookmark[-4:]:
        raise ValueError("damaged bookmark")
    length = struct.unpack_from(">I", body, 6)[0]
    path, position = body[10:10 + length], 10 + length
    position += 4 + struct.unpack_from(">I", body, position)[0]
    return path, struct.unpack_from(">IIQ", body, position)[2]


def field(contents):
    return struct.pack(">I", len(contents)) + contents
