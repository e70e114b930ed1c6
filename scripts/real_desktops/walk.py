"""The walk through Quillbox's menu on a real desktop: it does what a user would, and notes how each feature fared."""

import os
import re
import time
from dataclasses import dataclass, field
from datetime import datetime, timezone
from pathlib import Path
from urllib.parse import quote

from menu_world import CHOSEN, DEFAULT_MENU, LEVELS, build_world, same_titles, titles_of
from running_quillbox import RunningQuillbox, record
from virtual_desktop import DesktopError, wait_for

from .preferences import TRIALS, try_window

MANY = "Many files"
MANY_COUNT = 10_000
RECENT = "Recent"
USED = ["letter of yesterday.txt", "report.txt"]

# In the order of the walk; the columns of the table.
FEATURES = ["icon", "left click", "right click", "three levels", "odd titles", "recent items", "10,000 entries",
            "choosing", "second opening", "panel restarted", "preferences", "drag from the file manager", *TRIALS]


@dataclass
class Results:
    """The result for each feature: "yes", "yes: ..." or "no: ..."."""

    cells: dict = field(default_factory=dict)

    @property
    def failed(self):
        return [name for name, seen in self.cells.items() if seen.startswith("no")]

    def row(self, title):
        return "| " + " | ".join([title, *(self.cells.get(name, "not tried") for name in FEATURES)]) + " |"


def expect_titles(seen, wanted, what):
    if not same_titles(seen, wanted):
        raise DesktopError(f"{what}: wanted {wanted}, saw {seen}")


class DesktopWalk:
    """`menu_class` is the class that opens and reads the menu on this desktop. Of the features, only those whose names
    begin with a match of the regular expression `only` are tried."""

    def __init__(self, desktop, program, output, menu_class, only=""):
        self.desktop, self.program, self.output = desktop, program, Path(output)
        self.menu_class, self.only = menu_class, only
        self.results = Results()
        self.step = 0
        self.world = build_world(desktop, [record("arbitraryPath", MANY, os.fsencode(self.make_many())),
                                           self.recent_record()])
        desktop.before_icon()
        self.quillbox = RunningQuillbox(desktop, program, self.output / "quillbox.out")
        self.menu = menu_class(desktop, self.quillbox)
        self.results.cells["icon"] = "yes"
        self.picture("icon")

    def make_many(self):
        directory = self.desktop.home / MANY
        directory.mkdir()
        for number in range(MANY_COUNT):
            (directory / f"entry {number:05}.txt").touch()
        return directory

    def recent_record(self):
        bookmarks = ""
        for name in USED:
            path = self.desktop.home / name
            path.write_text("text\n")
            stamp = datetime.now(timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")
            bookmarks += (f'<bookmark href="file://{quote(str(path))}" added="{stamp}" modified="{stamp}" '
                          f'visited="{stamp}"/>')
        (self.desktop.home / ".local/share/recently-used.xbel").write_text(f'<xbel version="1.0">{bookmarks}</xbel>')
        return record("recentItemsDocs", RECENT) | {"maxNumberOfRecentItems": 10}

    # --- what is noted -------------------------------------------------------------------------------------------

    def seeing(self, *features):
        return Seeing(self, features)

    def picture(self, name):
        self.step += 1
        time.sleep(0.3)  # By then, what has just opened is drawn.
        self.desktop.picture(self.output / f"{self.step:02}-{name.replace(' ', '-').replace(',', '')}.png")

    # --- the walk ------------------------------------------------------------------------------------------------

    def walk(self):
        for feature, step in (("left click", self.left_click), ("right click", self.right_click),
                              ("three levels", self.levels), ("recent items", self.recent), ("10,000 entries", self.many),
                              ("choosing", self.choose), ("second opening", self.open_again),
                              ("panel restarted", self.restart_panel), ("preferences", self.preferences),
                              ("drag from the file manager", self.drag)):
            if not re.match(self.only, feature):
                continue
            with self.seeing(feature):
                self.results.cells[feature] = step() or "yes"
            self.menu.close()
        self.quillbox.process.terminate()
        self.quillbox.process.wait(10)
        for number, feature in enumerate(TRIALS):
            if not re.match(self.only, feature):
                continue
            with self.seeing(feature):
                try_window(feature, self.desktop, self.program, self.output / f"window-{number + 1}", self.menu_class)
        return self.results

    def wanted_menu(self):
        return [*DEFAULT_MENU, LEVELS[0][0], MANY, RECENT]

    def left_click(self):
        titles = self.menu.open()
        expect_titles(titles, self.wanted_menu(), "the menu")
        self.picture("menu")
        return f"yes: {self.menu.milliseconds:.0f} ms"

    def right_click(self):
        self.menu.open_by_right_click()
        self.picture("right click")

    def levels(self):
        self.menu.open()
        below, odd = LEVELS[0][0], None
        for _, entries in LEVELS:
            titles = self.menu.enter(below)
            try:
                expect_titles(titles, self.menu.level_of(below, titles_of(entries)), below)
            except DesktopError as error:
                odd = odd or error
            below = next((title for name, title in entries if name.endswith(b"/")), None)
        self.picture("three levels")
        self.results.cells["odd titles"] = f"no: {odd}" if odd else "yes"

    def recent(self):
        self.menu.open()
        titles = self.menu.enter(RECENT)
        self.picture("recent items")
        if not set(USED) <= set(titles):
            raise DesktopError(f"recent items were {titles}")

    def many(self):
        self.menu.open()
        start = time.monotonic()
        self.menu.enter(MANY)
        milliseconds = 1000 * (time.monotonic() - start)
        last = self.menu.last_of_long_level()
        self.picture("10,000 entries")
        if last != f"entry {MANY_COUNT - 1:05}.txt":
            raise DesktopError(f"the last of {MANY_COUNT} entries was {last}")
        return f"yes: {milliseconds:.0f} ms"

    def choose(self):
        self.menu.open()
        for title in [LEVELS[0][0], *(next(title for name, title in entries if name.endswith(b"/"))
                                      for _, entries in LEVELS[:-1])]:
            self.menu.enter(title)
        self.menu.choose(os.fsdecode(CHOSEN))
        opened = wait_for("the chosen file to be opened",
                          lambda: self.world.marker.exists() and self.world.marker.read_bytes())
        if opened != self.world.chosen + b"\n":
            raise DesktopError(f"chosen was {self.world.chosen!r}, opened was {opened!r}")
        wait_for("the menu to close", lambda: not self.menu.is_open())
        self.desktop.expect_idle_pointer()

    def open_again(self):
        picked = Path(os.fsdecode(self.world.picked))
        (picked / "file9.txt").rename(picked / "another.txt")
        wanted = sorted((title for title in titles_of(LEVELS[0][1]) if title != "file9.txt"), key=str.lower)
        self.menu.open()
        titles = self.menu.enter(LEVELS[0][0])
        self.picture("second opening")
        (picked / "another.txt").rename(picked / "file9.txt")
        if "another.txt" not in titles or "file9.txt" in titles or len(titles) < len(wanted):
            raise DesktopError(f"the second opening showed {titles}")

    def restart_panel(self):
        self.desktop.restart_host()
        self.quillbox.icon = self.desktop.wait_for_icon(self.quillbox.alive)
        expect_titles(self.menu.open(), self.wanted_menu(), "the menu after the restart")
        self.picture("panel restarted")

    def preferences(self):
        self.menu.open()
        self.menu.choose(DEFAULT_MENU[0])
        wait_for("the preferences window", lambda: self.quillbox.windows() and self.window("Quillbox Preferences"))
        time.sleep(0.5)  # The window draws itself.
        self.picture("preferences")
        self.desktop.expect_idle_pointer()

    def window(self, title):
        return next((window for window in self.desktop.windows_on_screen() if window[1] == title), None)

    def drag(self):
        """Drags a directory from the file manager into the list of the menu's items."""
        if not self.quillbox.windows():
            self.quillbox.desktop.activate_action("preferences")
            wait_for("the preferences window", lambda: self.window("Quillbox Preferences"))
        folder = self.desktop.home / "Dragged from"
        folder.mkdir()
        source = self.desktop.first_in_file_manager(folder, lambda: (folder / "Carried").mkdir(), self.picture)
        table = self.quillbox.view("TentativeMenuItemsTable", window=0)
        target = table.x + table.width // 2, table.y + table.height - 12
        self.desktop.drag(source, target, lambda: self.picture("dragging"))
        wait_for("the dragged directory among the items", lambda: any(
            view.name == "Carried" for views in self.quillbox.windows()[:1] for view in views), 5)
        self.picture("dragged")


class Seeing:
    """Notes for the features of its block "yes" or what was returned, or "no" and what went wrong."""

    def __init__(self, walk, features):
        self.walk, self.features = walk, features

    def __enter__(self):
        return self

    def __exit__(self, kind, error, trace):
        if kind is None:
            seen = "yes"
        elif issubclass(kind, (DesktopError, OSError)):
            seen = f"no: {error}"
        else:
            return False
        for feature in self.features:
            if seen != "yes" or feature not in self.walk.results.cells:
                self.walk.results.cells[feature] = seen
            print(f"  {feature}: {self.walk.results.cells[feature]}", flush=True)
        if kind is not None:
            self.walk.picture(f"failed {self.features[0]}")
        return True
