"""Operates and reads Quillbox's menu on a real desktop. If the host draws the menu, its rows are read from the host;
if Quillbox draws it, from Quillbox. Both classes open the menu, go down in it by titles, and choose."""

import time

from menu_world import SEPARATOR, shows
from virtual_desktop import DesktopError, wait_for

PLACEHOLDER = "\u2026"


class ShellMenu:
    """The menu that GNOME Shell draws: one column in which submenus unfold."""

    def __init__(self, desktop, quillbox):
        self.desktop, self.quillbox = desktop, quillbox
        self.path = []
        self.milliseconds = 0  # From the click on the icon to the rows.

    def is_open(self):
        return bool(self.desktop.menu_rows())

    def open(self, button=1):
        self.close()
        self.desktop.move_pointer(*self.quillbox.icon)
        start = time.monotonic()
        self.desktop.click(*self.quillbox.icon, button)
        wait_for("the menu", self.is_open)
        self.milliseconds = 1000 * (time.monotonic() - start)
        return self.settled([])

    def open_by_right_click(self):
        return self.open(3)

    def close(self):
        self.path = []
        if self.is_open():
            self.desktop.press_key("Escape")
            wait_for("the menu to close", lambda: not self.is_open())

    def level_of(self, title, titles):
        """Returns what the submenu of the row `title` must show if its files have these titles."""
        return [f"Open {title}", SEPARATOR, *titles]

    def rows(self, path):
        rows = self.desktop.menu_rows()
        for title in path:
            row = next((row for row in rows if row.title == title), None)
            if row is None or not row.is_open:
                return []
            rows = row.below
        return rows

    def settled(self, path):
        """Returns the titles of the level once it has its rows and they no longer change."""
        seen = [None]

        def same():
            titles = [row.title for row in self.rows(path)]
            seen.append(titles if titles and not any(title.startswith(PLACEHOLDER) for title in titles) else None)
            time.sleep(0.05)
            return seen[-1] if seen[-1] == seen[-2] else None
        try:
            return wait_for(f"the rows of {path or 'the menu'}", same)
        except DesktopError as error:
            raise DesktopError(f"{error}; they were {[row.title for row in self.rows(path)]}") from None

    def enter(self, title):
        self.click(title)
        self.path.append(title)
        return self.settled(self.path)

    def choose(self, title):
        self.click(title)

    def last_of_long_level(self):
        """Opens the rows that continue a long level, and returns the title of its last entry."""
        while (row := self.rows(self.path)[-1]).title.startswith("More"):
            self.enter(row.title)
        self.in_sight(row.title)
        return row.title

    def click(self, title):
        for _ in range(20):
            row = self.in_sight(title)
            self.desktop.move_pointer(*row.middle)
            # Rows move while levels are filled.
            if self.in_sight(title).middle == row.middle:
                self.desktop.click(*row.middle)
                return
        raise DesktopError(f"\"{title}\" does not stand still")

    def in_sight(self, title):
        """Scrolls until that row of the deepest level is visible, and returns it."""
        def row():
            found = next((row for row in self.rows(self.path) if shows(row.title, title)), None)
            if found is None:
                raise DesktopError(f"no row \"{title}\" in {[row.title for row in self.rows(self.path)][:30]}")
            return found
        for _ in range(400):
            found = self.unmoving(row)
            if found.is_in_sight:
                return found
            if found.bottom - found.top < 4:
                raise DesktopError(f"\"{title}\": its level is {found.bottom - found.top} pixels high")
            self.desktop.move_pointer(found.middle[0], (found.top + found.bottom) // 2)
            self.desktop.scroll(1 if found.middle[1] >= found.bottom else -1)
        raise DesktopError(f"\"{title}\" can't be scrolled into sight")

    def unmoving(self, row):
        """Returns the row once the shell no longer moves it."""
        places = [None]

        def still():
            now = row()
            places.append((now.y, now.top, now.bottom))
            time.sleep(0.03)
            return now if places[-1] == places[-2] else None
        return wait_for("the menu to stand still", still)


class PopupMenu:
    """The menu that Quillbox draws, one popup for each level. Most hosts draw the menu of a right click."""

    def __init__(self, desktop, quillbox):
        self.desktop, self.quillbox = desktop, quillbox
        self.level = 0
        self.milliseconds = 0  # From the click on the icon to the rows.

    def is_open(self):
        return bool(self.quillbox.open_levels())

    def open(self):
        self.close()
        self.level = 0
        self.desktop.move_pointer(*self.quillbox.icon)
        start = time.monotonic()
        self.desktop.click(*self.quillbox.icon)
        titles = self.titles("the menu")
        self.milliseconds = 1000 * (time.monotonic() - start)
        return titles

    def titles(self, what):
        return [row.title for row in self.quillbox.expect_level(self.level, what, lambda titles: titles)]

    def open_by_right_click(self):
        self.close()
        before = self.desktop.menu_windows()
        self.desktop.click(*self.quillbox.icon, 3)
        # The host draws this menu; if its tray has the older protocol, Quillbox does.
        wait_for("the short menu", lambda: self.desktop.menu_windows() - before or self.is_open())
        time.sleep(0.3)  # The host draws it.

    def close(self):
        if self.is_open() or self.desktop.menu_windows():
            for _ in range(6):
                self.desktop.press_key("Escape")
        wait_for("the menu to close", lambda: not self.is_open())

    def level_of(self, title, titles):
        return titles

    def enter(self, title):
        rows = self.quillbox.expect_level(self.level, title, lambda titles: titles)
        self.quillbox.hover(rows, next((row.title for row in rows if shows(row.title, title)), title))
        self.level += 1
        return self.titles(title)

    def choose(self, title):
        rows = self.quillbox.expect_level(self.level, title, lambda titles: titles)
        self.desktop.click(*self.quillbox.hover(rows, title).middle)

    def last_of_long_level(self):
        rows = self.quillbox.open_levels()[self.level]
        self.desktop.move_pointer(*rows[0].middle)
        self.desktop.press_key("End")
        first = rows[0].title
        wait_for("the level to scroll", lambda: self.quillbox.open_levels()[self.level][0].title != first)
        return self.quillbox.open_levels()[self.level][-1].title
