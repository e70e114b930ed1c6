"""The running Quillbox as a user sees it on a virtual desktop: its settings, written before it starts, and its open
menus."""

import os
import plistlib
import re
from dataclasses import dataclass
from datetime import datetime, timezone

from bookmark import bookmark_of_path
from virtual_desktop import DesktopError, wait_for


@dataclass
class Row:
    x: int
    y: int
    width: int
    height: int
    title: str

    @property
    def middle(self):
        return self.x + min(self.width // 2, 60), self.y + self.height // 2


@dataclass
class View:
    """A view of a window: its class, the beginning of its name or text, and its place on the screen."""
    kind: str
    name: str
    x: int
    y: int
    width: int
    height: int
    depth: int

    @property
    def middle(self):
        return self.x + self.width // 2, self.y + self.height // 2


def record(kind, title="", path=b""):
    return {
        "menuItemType": kind, "displayString": title, "unixPath": os.fsdecode(path),
        "bookmarkData": bookmark_of_path(path) if path else b"", "optionFlags": 0,
        "noRecentItemsOlderThan": datetime(2026, 1, 1, tzinfo=timezone.utc).replace(tzinfo=None),
        "maxNumberOfRecentItems": 0,
    }


def write_settings(desktop, records):
    """Writes settings with this list of items into the desktop's home directory. Returns their path."""
    settings = desktop.home / ".config/quillbox/defaults.plist"
    settings.parent.mkdir(exist_ok=True)
    settings.write_bytes(plistlib.dumps({
        "MenuSaveVersion": 2,
        "UserPickedMenuItems": plistlib.dumps(records, fmt=plistlib.FMT_BINARY),
    }, fmt=plistlib.FMT_BINARY))
    return settings


class RunningQuillbox:
    """`printed` is the file with Quillbox's standard output."""

    def __init__(self, desktop, program, printed):
        self.desktop = desktop
        # The number of screen pixels for one point of the program.
        self.scale = float(desktop.environment.get("QT_SCALE_FACTOR", "1"))
        self.printed = printed
        with open(self.printed, "wb") as out:
            self.process = desktop.start([str(program)], stdout=out)
        self.icon = desktop.wait_for_icon(self.alive)

    def alive(self):
        if self.process.poll() is not None:
            raise DesktopError(f"Quillbox has ended (exit code {self.process.returncode})")
        return True

    def open_levels(self):
        """Returns the open menus, the top level first, each as a list of its visible rows; [] if no menu is open."""
        self.alive()
        before = self.printed.stat().st_size
        self.desktop.activate_action("print-open-menus")
        text = self.printed_since(before)
        levels = []
        left, top = self.desktop.popup_origin()
        for line in text.splitlines():
            if re.match(r"level \d+: ", line):
                levels.append([])
                continue
            row = re.match(r"  (-?\d+),(-?\d+) (\d+)x(\d+) ?(.*)", line)
            if row and levels:
                x, y, width, height = (int(row[i]) for i in range(1, 5))
                levels[-1].append(Row(left + x, top + y, width, height, row[5]))
        return levels

    def windows(self):
        """Returns the open windows, the oldest first, each as a list of its views from the top down; the contents of
        hidden tabs are left out."""
        before = self.printed.stat().st_size
        self.desktop.activate_action("print-windows")
        windows, hidden_depth = [], None
        for line in self.printed_since(before, b"(no more windows)\n").splitlines():
            if line.startswith("window "):
                windows.append([])
                continue
            view = re.fullmatch(r'( *)(\w+)(?: "(.*)")? (-?[\d.]+),(-?[\d.]+) ([\d.]+)x([\d.]+)( \(hidden\))?', line)
            depth = len(view[1])
            if hidden_depth is not None and depth > hidden_depth:
                continue
            hidden_depth = depth if view[8] else None
            if not view[8]:
                windows[-1].append(View(view[2], view[3] or "",
                                        *(round(float(view[i]) * self.scale) for i in range(4, 8)), depth))
        offsets = self.desktop.offsets_of_windows([views[0] for views in windows])
        for views, (x, y) in zip(windows, offsets):
            for view in views:
                view.x, view.y = view.x + x, view.y + y
        return windows

    def view(self, kind, name=None, window=-1):
        """Waits for such a view in the front window and returns the first one; `name` is the beginning of its name."""
        return wait_for(f"a {kind} {name or ''}", lambda: next(
            (view for views in self.windows()[window:][:1] for view in views
             if view.kind == kind and view.name.startswith(name or "")), None))

    def printed_since(self, position, end=b"(no more open menus)\n"):
        """Waits for what Quillbox prints after that position, up to the line that ends it, and returns it. The program
        prints after it has answered the call."""
        def grown():
            self.alive()
            with open(self.printed, "rb") as printed:
                printed.seek(position)
                text = printed.read()
            return text if text.endswith(end) else None
        return wait_for("what is open as text", grown).removesuffix(end).decode(errors="replace")

    def expect_level(self, number, what, matches):
        """Waits until level `number` is the deepest open one and its titles match. Returns its rows."""
        seen = []

        def there():
            seen[:] = self.open_levels()
            return len(seen) == number + 1 and matches([row.title for row in seen[number]])
        try:
            wait_for(what, there)
        except DesktopError as error:
            shown = "\n".join(f"  level {i}: {[row.title for row in rows]}" for i, rows in enumerate(seen))
            raise DesktopError(f"{error}; open were:\n{shown or '  no menus'}") from None
        return seen[number]

    def hover(self, rows, title):
        row = next((row for row in rows if row.title == title), None)
        if row is None:
            raise DesktopError(f"no row \"{title}\" in {[row.title for row in rows]}")
        self.desktop.move_pointer(*row.middle)
        return row
