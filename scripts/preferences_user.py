"""A person with Quillbox's preferences window on a virtual desktop: what can be seen in it, and what hands do."""

from running_quillbox import RunningQuillbox
from virtual_desktop import DesktopError, wait_for

TABLE, SUGGESTIONS = "TentativeMenuItemsTable", "SuggestedMenuItemsTable"
WINDOW, PANEL = "Quillbox Preferences", "Quillbox"


class PreferencesUser(RunningQuillbox):
    """Pictures and what the program prints go to `directory`."""

    def __init__(self, desktop, program, directory):
        super().__init__(desktop, program, directory / "quillbox.out")
        self.directory = directory
        self.step = 0

    def open(self):
        """From the menu, by clicks; returns once the window has drawn itself."""
        self.choose_preferences()
        self.wait_until_placed()

    def choose_preferences(self):
        self.desktop.click(*self.icon)
        top = self.expect_level(0, "the menu", lambda rows: rows)
        self.desktop.click(*top[0].middle)

    def wait_until_placed(self):
        """Until the program knows where the window manager has put its window."""
        def placed():
            shown = self.windows()
            # The window manager places windows on odd pixels too.
            return shown and self.desktop.is_in_place(WINDOW, (shown[0][0].x, shown[0][0].y), self.scale)
        wait_for("the window in its place", placed)

    def wait_until_closed(self):
        self.wait_for_windows(0)

    def picture(self, name):
        self.step += 1
        self.desktop.picture(self.directory / f"{self.step:02}-{name}.png")

    # --- rows ---------------------------------------------------------------------------------------------------

    def rows(self, table=TABLE):
        """The texts of a table's rows in sight, with the row's own place."""
        found, row, depth = [], None, None
        for view in (self.windows() or [[]])[0]:
            if depth is not None and view.depth <= depth:
                depth = None
            if view.kind == table:
                depth = view.depth
            elif depth is not None and view.kind == "NSView":
                row = view
            elif depth is not None and view.kind == "NSTextField":
                found.append((view.name, row))
        return sorted(found, key=lambda title_and_row: title_and_row[1].y)

    def expect_rows(self, titles):
        seen = []

        def there():
            seen[:] = [name for name, _ in self.rows()]
            return seen == titles
        try:
            wait_for(f"the rows {titles}", there, 5)
        except DesktopError as error:
            raise DesktopError(f"{error}; they were {seen}") from None
        print(f"  rows: {', '.join(titles)}", flush=True)

    def row(self, title, table=TABLE):
        return next(row for name, row in self.rows(table) if name == title)

    def gap(self, above):
        """A point between that row and the one before it; None is the list's end."""
        row = self.row(above) if above is not None else self.rows()[-1][1]
        return row.x + row.width // 2, row.y + 2 if above is not None else row.y + row.height + 2

    def click_row(self, title, table=TABLE):
        self.desktop.click(*self.row(title, table).middle)

    def drag_row(self, title, above):
        self.desktop.drag(self.row(title).middle, self.gap(above))

    def drag_rows(self, titles, above):
        self.click_row(titles[0])
        for title in titles[1:]:
            with self.desktop.holding("ctrl"):
                self.click_row(title)
        self.drag_row(titles[-1], above)

    def drag_suggestion(self, title, above):
        self.desktop.drag(self.row(title, SUGGESTIONS).middle, self.gap(above))

    def pick(self, name, above):
        """Adds a file of the home directory by the panel that the suggestion brings, with the keyboard."""
        self.drag_suggestion("[Any File/Directory]", above)
        wait_for("the panel", lambda: self.desktop.windows_titled(PANEL))
        self.picture("panel")
        self.desktop.type_text(name)
        self.desktop.press_key("ctrl+Return")

    def drag_to_trash(self, title):
        trash = self.view("TentativeMenuItemDeleter", window=0)
        self.desktop.drag(self.row(title).middle, trash.middle,
                          before_release=lambda: self.picture("over the trash can"))

    def picture_puff(self):
        """Taken until the smoke is gone; at least one must show it."""
        count = 0
        while any(view.name == "smoke" for view in self.windows()[0]):
            count += 1
            self.picture(f"puff {count}")
        if not count:
            raise DesktopError("there was no puff of smoke")
        print(f"  a puff of smoke, {count} pictures", flush=True)

    # --- controls -----------------------------------------------------------------------------------------------

    def press(self, title):
        self.desktop.click(*self.view("NSButton", title).middle)

    def edit(self, title):
        """Presses the row's button and waits for the sheet."""
        row = self.row(title)
        self.desktop.click(round(row.x + 8 * self.scale), row.middle[1])
        self.wait_for_windows(2)

    def wait_for_sheet_to_end(self):
        self.wait_for_windows(1)

    def wait_for_windows(self, count):
        """As many of Quillbox's windows, for the program and on the screen."""
        wait_for(f"{count} windows", lambda: len(self.windows()) == count
                 and len(self.desktop.windows_titled(WINDOW)) == count)

    def selected_tab(self):
        """The name of the tab whose contents show."""
        views = self.windows()[0]
        tabs = next(i for i, view in enumerate(views) if view.kind == "NSTabView")
        # One that scrolls stands below its scroll view.
        return next(view.name for view in views[tabs + 1:] if view.kind == "NSView" and view.name)

    def each_tab(self):
        """Clicks along the tabs and stops at each one that this brings up; gives their names."""
        tabs, page = self.view("NSTabView", window=0), self.view("NSView", self.selected_tab(), window=0)
        seen = []
        for x in range(tabs.x, tabs.x + tabs.width, round(20 * self.scale)):
            self.desktop.click(x, (tabs.y + page.y) // 2)
            if (name := self.selected_tab()) not in seen:
                seen.append(name)
                yield name

    def expect_menu(self, titles):
        self.desktop.click(*self.icon)
        self.expect_level(0, f"the menu {titles}", lambda seen: seen == titles)
        self.picture("menu")
        self.desktop.press_key("Escape")
