"""The files and settings for the walk through Quillbox's menu, and what its rows must show."""

import os
import plistlib
from dataclasses import dataclass
from pathlib import Path

from running_quillbox import record, write_settings

SEPARATOR = None  # stands for a row without a title
DEFAULT_MENU = ["Quillbox Preferences...", SEPARATOR, "System Settings", SEPARATOR, "Applications"]
OTHER_READER = "Another Reader"  # is not among the applications, but opens texts and directories
READER = "1st & only Reader"  # sorts before every installed application

# The picked directory. A name that ends in "/" is a directory; the rest is what its row must show, in menu order.
LEVELS = [
    ("Papers & <b>Letters</b>", [
        (b"2 levels \xe2\x80\x93 \xd7\x90\xd7\x91\xd7\x92/", "2 levels – אבג"),
        (b"bad \xff byte.txt", "bad \ufffd byte.txt"),
        ("cafe\u0301.txt".encode(), "cafe\u0301.txt"),
        (b"empty/", "empty"),
        (b"file9.txt", "file9.txt"),
        (b"file10.txt", "file10.txt"),
        (b"line\nbreak.txt", "line\u21b5break.txt"),
        (b"locked & unlocked.txt", "locked & unlocked.txt"),
        (b"no\x1b[31mcolour.txt", "no\ufffd[31mcolour.txt"),
        (b"x" * 251 + b".txt", "x" * 251 + ".txt"),
        (b".only with hidden items.txt", None),
    ]),
    (None, [
        (b"&File.txt", "&File.txt"),
        (b"3rd level\t(tab)/", "3rd level\u2192(tab)"),
        (b"100% _under_ $HOME 'single' \"double\".txt", "100% _under_ $HOME 'single' \"double\".txt"),
    ]),
    (None, [
        (b"read me %f & 'me'.txt", "read me %f & 'me'.txt"),
        ("\U0001F6D1 stop.txt".encode(), "\U0001F6D1 stop.txt"),
    ]),
]
CHOSEN = b"read me %f & 'me'.txt"


@dataclass
class World:
    picked: bytes  # the picked directory's path
    chosen: bytes  # the path of the file that the walk chooses
    marker: Path  # where the application that opens the file writes its arguments
    settings: Path

    def saved_bookmark(self):
        saved = plistlib.loads(self.settings.read_bytes())
        return plistlib.loads(saved["UserPickedMenuItems"])[-1]["bookmarkData"]


def build_world(desktop, more_records=()):
    """Makes the files, the application and the settings for the walk; `more_records` are appended to the items."""
    directory = os.fsencode(desktop.home / LEVELS[0][0])
    picked = directory
    for _, entries in LEVELS:
        os.makedirs(directory, exist_ok=True)
        below = None
        for name, _ in entries:
            path = os.path.join(directory, name)
            if name.endswith(b"/"):
                os.makedirs(path)
                below = below or path.rstrip(b"/")
            else:
                with open(path, "wb") as file:
                    file.write(b"text\n")
        directory = below or directory

    marker = desktop.root / "opened"
    reader = desktop.root / "reader"
    reader.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" > {marker}.part && mv {marker}.part {marker}\n')
    reader.chmod(0o755)
    other = desktop.root / "other"
    other.write_text(reader.read_text().replace('"$@"', 'other "$@"'))
    other.chmod(0o755)
    applications = desktop.root / "local/share/applications"
    applications.mkdir(parents=True)
    (applications / "walk-other.desktop").write_text(
        f"[Desktop Entry]\nType=Application\nName={OTHER_READER}\nNoDisplay=true\nExec={other} %f\n"
        "MimeType=text/plain;inode/directory;\n")
    (applications / "mimeinfo.cache").write_text(
        "[MIME Cache]\ntext/plain=walk-other.desktop;walk-reader.desktop;\ninode/directory=walk-other.desktop;\n")
    (applications / "walk-reader.desktop").write_text(
        f"[Desktop Entry]\nType=Application\nName={READER}\nIcon=accessories-text-editor\n"
        f"Exec={reader} %f\nMimeType=text/plain;\n")
    (desktop.home / ".config/mimeapps.list").write_text("[Default Applications]\ntext/plain=walk-reader.desktop\n")

    settings = write_settings(desktop, [
        record("separator"), record("systemSettings", "System Settings"), record("separator"),
        record("systemApplicationsDirectory", "Applications"), record("arbitraryPath", LEVELS[0][0], picked),
        *more_records,
    ])
    return World(picked, os.path.join(directory, CHOSEN), marker, settings)


def titles_of(entries):
    return [title for _, title in entries if title is not None]


def shows(seen, wanted):
    """Whether a row's title is the wanted one, or that with its middle left out, as hosts that draw the menu get it."""
    begin, cut, end = seen.partition("\u2026")
    return seen == wanted or bool(cut and len(begin) > 5 and wanted.startswith(begin) and wanted.endswith(end))


def same_titles(seen, wanted):
    return len(seen) == len(wanted) and all(is_separator(a) if b is SEPARATOR else shows(a, b)
                                            for a, b in zip(seen, wanted))


def is_separator(title):
    return not title.strip("-")
