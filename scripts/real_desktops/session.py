"""What sessions of real desktops have in common, in addition to VirtualDesktop."""

import time

from virtual_desktop import VirtualDesktop, wait_for


class RealSession(VirtualDesktop):
    file_manager = ()  # The command that shows a directory, which is appended to it.

    def __init__(self, log, host, **environment):
        super().__init__(log, host)
        for name in ("NO_AT_BRIDGE", "GIO_USE_VFS"):
            del self.environment[name]
        self.environment.update(environment)

    def has_watcher(self):
        return True

    def before_icon(self):
        """Called before Quillbox's icon appears, for sessions that find it by what is new on the screen."""

    def expect_idle_pointer(self):
        """Raises DesktopError if the pointer does not stop showing that a program is being started."""

    def windows_on_screen(self):
        """(class, title, x, y, width, height) of each window, frames without their shadows."""
        raise NotImplementedError

    def pixels_of(self, x, y, width, height):
        """Returns the pixels of that part of the screen, three bytes each, row by row."""
        picture = self.root / "pixels.png"
        self.picture(picture)
        return self.output("convert", str(picture), "-crop", f"{width}x{height}+{x}+{y}", "+repage", "-depth", "8",
                           "rgb:-")

    def first_in_file_manager(self, directory, add, save_picture):
        """Shows the empty directory in the desktop's file manager; `add` puts a file into it. Returns the place of the
        file on the screen: where, from the top, the window's content changes first."""
        known = set(self.windows_on_screen())
        self.start([*self.file_manager, str(directory)])
        window = wait_for("the file manager", lambda: next(iter(set(self.windows_on_screen()) - known), None), 40)
        self.arrange(window)
        time.sleep(4)  # By then the window has its title, its size and its layout.
        window = wait_for("the file manager's window", lambda: next(
            (other for other in self.windows_on_screen()
             if other[0] == window[0] and other[1] != "Quillbox Preferences"), None))
        left, top, width, height = window[2:]
        # The bars above and the line below change for other reasons.
        area = left + 8, top + 90, width - 16, height - 90 - 40
        before = self.unmoving(area)
        add()
        wait_for("the file manager to show what is new", lambda: self.pixels_of(*area) != before, 40)
        after = self.unmoving(area)
        save_picture("file manager")
        # Backgrounds change a little by themselves.
        changed = [i // 3 for i in range(0, len(after), 3)
                   if sum(abs(a - b) for a, b in zip(after[i:i + 3], before[i:i + 3])) > 60]
        rows = sorted({i // area[2] for i in changed})
        bottom = next((y for y, below in zip(rows, rows[1:]) if below > y + 2), rows[-1])
        columns = sorted({i % area[2] for i in changed if i // area[2] <= bottom})
        right = next((x for x, beside in zip(columns, columns[1:]) if beside > x + 8), columns[-1])
        return area[0] + (columns[0] + right) // 2, area[1] + (rows[0] + bottom) // 2

    def arrange(self, window):
        """Moves the file manager's window so that the preferences window stays visible."""

    def unmoving(self, area):
        """Returns the pixels of that area once they no longer change."""
        seen = [None]

        def still():
            time.sleep(0.3)
            seen.append(self.pixels_of(*area))
            return seen[-1] if seen[-1] == seen[-2] else None
        return wait_for("the screen to stand still", still, 60)


