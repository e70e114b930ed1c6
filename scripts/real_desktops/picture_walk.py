"""A short walk for hosts that do not tell the rows of their menus: what opens is found where pictures of the screen
differ."""

import os
import time
from pathlib import Path

from menu_world import build_world
from running_quillbox import RunningQuillbox, record
from virtual_desktop import DesktopError, wait_for

from .walk import Results, Seeing

LAST = "Few files"
ROW = 14  # From a menu's lower edge to the middle of its last row, in pixels.


def difference(before, after, width):
    """Returns the rectangle (left, top, right, bottom) of what differs between two pictures, None if nothing does."""
    line = 3 * width
    rows = [y for y in range(len(before) // line) if before[y * line:(y + 1) * line] != after[y * line:(y + 1) * line]]
    if not rows:
        return None
    columns = {i % line // 3 for y in rows for i in range(y * line, (y + 1) * line) if before[i] != after[i]}
    return min(columns), rows[0], max(columns) + 1, rows[-1] + 1


class PictureWalk:
    """Opens the menu, then for the first time the level of its last row, and chooses the last file there. The panel is
    at the lower edge."""

    def __init__(self, desktop, program, output):
        self.desktop, self.output = desktop, Path(output)
        self.results = Results()
        files = desktop.home / LAST
        files.mkdir()
        for number in range(6):
            (files / f"{number}.txt").touch()
        self.world = build_world(desktop, [record("arbitraryPath", LAST, os.fsencode(files))])
        self.chosen = files / "5.txt"
        desktop.before_icon()
        self.quillbox = RunningQuillbox(desktop, program, self.output / "quillbox.out")
        self.results.cells["icon"] = "yes"
        self.area = (0, 0, desktop.width, desktop.panel_areas()[0][1])
        self.menu = self.level = None

    def seeing(self, *features):
        return Seeing(self, features)

    def picture(self, name):
        self.desktop.picture(self.output / f"{name.replace(' ', '-')}.png")

    def walk(self):
        for feature, step in (("left click", self.open), ("first opening", self.enter), ("choosing", self.choose)):
            with self.seeing(feature):
                step()
            if self.results.failed:
                break
        return self.results

    def opened(self, before, what):
        """Returns the rectangle of what has opened since the picture `before`."""
        after = wait_for(what, lambda: (now := self.desktop.unmoving(self.area)) != before and now)
        return difference(before, after, self.area[2])

    def open(self):
        x, y = self.quillbox.icon
        self.desktop.move_pointer(x, y)
        before = self.desktop.unmoving(self.area)
        self.desktop.click(x, y)
        self.menu = self.opened(before, "the menu")
        self.picture("menu")
        left, _, right, bottom = self.menu
        if not left - 40 <= x <= right + 40 or bottom < self.area[3] - 4:
            raise DesktopError(f"the menu is at {self.menu}, the icon at {x}, {y}")

    def enter(self):
        """A hand comes to rest on the last row, and moves on a little, several times."""
        before = self.desktop.unmoving(self.area)
        left, _, _, bottom = self.menu
        for step in range(4):
            self.desktop.move_pointer(left + 60 + 3 * step, bottom - ROW)
            time.sleep(1)
        self.level = self.opened(before, "the last row's level")
        self.picture("first opening")
        if self.level[0] > left - 60:
            raise DesktopError(f"nothing has opened beside the menu at {self.menu}; what has changed is at {self.level}")

    def choose(self):
        x, y = self.level[0] + 60, self.level[3] - ROW
        self.desktop.move_pointer(self.menu[0] - 20, self.menu[3] - ROW)
        self.desktop.click(x, y)
        opened = wait_for("the chosen file to be opened",
                          lambda: self.world.marker.exists() and self.world.marker.read_bytes())
        if opened != os.fsencode(self.chosen) + b"\n":
            raise DesktopError(f"chosen was {self.chosen}, opened was {opened!r}")
