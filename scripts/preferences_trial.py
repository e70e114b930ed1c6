"""The preferences window in a person's hands: items are dragged into the list, around it, out of it and in from another
program, edited, applied and cancelled; then the same with the keyboard alone, and with programs that die, fall silent
or would rather move their files. What is stored is read by an independent reader."""

import plistlib
import signal
import time
from pathlib import Path

from running_quillbox import record, write_settings
from virtual_desktop import DesktopError, wait_for

SEPARATOR = "\u23af" * 13 + "..."
FIRST = "Quillbox Preferences..."
LABELS = ["One", "Two", "Three", "Four", "Five"]
DEFAULT_ROWS = [FIRST, SEPARATOR, "System Settings", SEPARATOR, "Applications"]
DROPPED = "dropped & 100% \u00e4.txt"
PICKED = "Papers"
SOURCE = Path(__file__).with_name("drag_source.py")


def stored_items(settings):
    return plistlib.loads(plistlib.loads(settings.read_bytes())["UserPickedMenuItems"])


def stored_titles(settings):
    return [item["displayString"] for item in stored_items(settings)]


def expect(what, seen, wanted):
    if seen != wanted:
        raise DesktopError(f"{what}: expected {wanted}, was {seen}")
    print(f"  {what}", flush=True)


class OtherProgram:
    """Another program's window, at the screen's left edge, with a file that can be dragged. To be used in a `with`
    statement. `options` are those of drag_source.py."""

    TITLE = "Files"
    FILE, FIELD = (140, 350), (140, 450)

    def __init__(self, user, file, *options):
        self.desktop = user.desktop
        self.printed = user.directory / f"{file.name}.out"
        file.touch()
        with open(self.printed, "wb") as out:
            self.process = self.desktop.start(
                ["/usr/bin/python3", str(SOURCE), *options, "240x200+20+300", str(file)], stdout=out)

    def __enter__(self):
        self.desktop.put_window(self.TITLE, 20, 300)
        return self

    def __exit__(self, *_):
        self.kill()
        self.wait_until_gone()

    def kill(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)

    def wait_until_gone(self):
        wait_for("the other program's window to go", lambda: not self.desktop.windows_titled(self.TITLE))

    def drag_to(self, point, **options):
        self.desktop.drag(self.FILE, point, **options)

    def expect_said(self, text):
        wait_for(f"the other program to say {text!r}, it said {self.printed.read_text()!r}",
                 lambda: text in self.printed.read_text())


class PreferencesTrial:
    """`user` has started Quillbox with the settings that prepare() has written."""

    def __init__(self, user, settings):
        self.user, self.desktop, self.settings = user, user.desktop, settings
        self.file = self.desktop.home / DROPPED

    @staticmethod
    def prepare(desktop):
        """Makes the settings and the files. Returns the path of the settings."""
        (desktop.home / PICKED).mkdir(exist_ok=True)
        return write_settings(desktop, [record("plaintext", label) for label in LABELS])

    def cancel(self):
        """Cancelling changes nothing."""
        user, before = self.user, self.settings.read_bytes()
        user.open()
        user.picture("menus")
        user.drag_row("One", above="Four")
        user.expect_rows([FIRST, "Two", "Three", "One", "Four", "Five"])
        user.press("Cancel")
        user.wait_until_closed()
        expect("Cancel leaves what is stored", self.settings.read_bytes(), before)
        user.open()
        user.expect_rows([FIRST, *LABELS])
        self.desktop.press_key("Escape")
        user.wait_until_closed()

    # --- keys -----------------------------------------------------------------------------------------------------

    def press(self, *keys):
        for key in keys:
            self.desktop.press_key(key)

    def arrange_by_keys(self):
        """Without a pointer: after the first click, all is done by keys."""
        user = self.user
        user.open()
        user.click_row("Three")
        self.press("alt+Up")
        user.expect_rows([FIRST, "One", "Three", "Two", "Four", "Five"])
        self.press("shift+Down", "alt+Down", "alt+Down")
        user.picture("rows moved by keys")
        user.expect_rows([FIRST, "One", "Four", "Five", "Three", "Two"])
        self.press("ctrl+z", "ctrl+z")
        user.expect_rows([FIRST, "One", "Three", "Two", "Four", "Five"])
        self.press("ctrl+z", "ctrl+z")
        user.expect_rows([FIRST, *LABELS])
        self.press("ctrl+shift+z")
        user.expect_rows([FIRST, "One", "Three", "Two", "Four", "Five"])
        user.click_row("One")
        self.press("Delete", "Delete")
        user.expect_rows([FIRST, "Two", "Four", "Five"])
        copied = self.desktop.home / "copied.txt"
        copied.touch()
        self.desktop.copy_file(copied)
        self.press("ctrl+v")
        user.expect_rows([FIRST, "Two", "copied.txt", "Four", "Five"])
        user.click_row("Recent Items", "SuggestedMenuItemsTable")
        self.press("Return")
        user.expect_rows([FIRST, "Two", "copied.txt", "Recent Items", "Four", "Five"])
        user.picture("added by Return")

    def sheets_by_keys(self):
        user = self.user
        user.click_row("Four")
        for key in ("space", "F2"):
            self.press(key)
            user.wait_for_windows(2)
            self.press("Escape")
            user.wait_for_sheet_to_end()
        user.edit("Two")
        self.press("Escape")
        user.wait_for_sheet_to_end()
        self.press("Return")
        user.wait_for_windows(2)
        print("  the keyboard came back to the row's button", flush=True)
        self.press("Escape")
        user.wait_for_sheet_to_end()
        self.press("ctrl+Tab")
        wait_for("the About tab", lambda: user.selected_tab() == "About")
        self.press("ctrl+shift+Tab")
        wait_for("the Menus tab", lambda: user.selected_tab() == "Menus")
        self.press("Escape")
        user.wait_until_closed()

    # --- other programs ---------------------------------------------------------------------------------------------

    def reset(self):
        user = self.user
        user.open()
        user.press("Reset")
        user.expect_rows(DEFAULT_ROWS)
        user.drag_suggestion("Recent Items", above=None)
        user.picture("after Reset")
        user.expect_rows([*DEFAULT_ROWS, "Recent Items"])
        self.press("Escape")
        user.wait_until_closed()

    def other_programs(self):
        """Programs that die, would rather move their files, or never give their data."""
        user, home = self.user, self.desktop.home
        user.open()
        with OtherProgram(user, home / "dead.txt") as dead:
            dead.drag_to(user.gap("Four"), before_release=dead.kill)
        user.expect_rows([FIRST, *LABELS])
        rows = [FIRST, "One", "alive.txt", *LABELS[1:]]
        with OtherProgram(user, home / "alive.txt") as alive:
            alive.drag_to(user.gap("Two"))
            user.expect_rows(rows)
        with OtherProgram(user, home / "moved.txt", "--move") as mover:
            mover.drag_to(user.gap("Two"))
            mover.expect_said("dragged: nothing")
            user.expect_rows(rows)
        with OtherProgram(user, home / "silent.txt", "--silent") as silent:
            silent.drag_to(user.gap("Two"))
            silent.expect_said("asked")
            begin = time.monotonic()
            user.expect_rows(rows)
            waited = time.monotonic() - begin
            if waited > 3:
                raise DesktopError(f"a silent program stopped the window for {waited:.1f} s")
            print(f"  a silent program: {waited:.1f} s", flush=True)
        self.press("Escape")
        user.wait_until_closed()

    def drag_outlives_window(self):
        user, desktop = self.user, self.desktop
        user.open()
        desktop.move_pointer(*user.row("Three").middle)
        desktop.press_button()
        desktop.move_pointer(*user.gap("One"))
        desktop.close_window_while_dragging()
        wait_for("the window to close", lambda: not user.windows())
        desktop.activate_action("preferences")
        user.wait_until_placed()
        desktop.move_pointer(*user.gap("One"))
        desktop.nudge_pointer(1)
        desktop.release_button()
        user.expect_rows([FIRST, *LABELS])
        self.press("Escape")
        user.wait_until_closed()

    # --- the whole list ---------------------------------------------------------------------------------------------

    def arrange(self):
        user, desktop = self.user, self.desktop
        user.open()
        user.drag_suggestion("Recent Items", above="Two")
        user.expect_rows([FIRST, "One", "Recent Items", *LABELS[1:]])
        user.drag_row("One", above=None)
        user.expect_rows([FIRST, "Recent Items", "Two", "Three", "Four", "Five", "One"])
        user.drag_rows(["Recent Items", "Three", "Five"], above="One")
        user.expect_rows([FIRST, "Two", "Four", "Recent Items", "Three", "Five", "One"])
        user.picture("scattered rows together")
        rows = [FIRST, "Two", self.file.name, "Four", "Recent Items", "Three", "Five", "One"]
        with OtherProgram(user, self.file) as other:
            other.drag_to(user.gap("Four"))
            user.expect_rows(rows)
            other.expect_said("dragged: copy")
            desktop.drag(user.row("Three").middle, other.FIELD)
            # The three rows are still selected, so the drag is of them all.
            other.expect_said("received: 'Recent Items\\nThree\\nFive'")
            user.expect_rows(rows)

    def edit_and_remove(self):
        user, desktop = self.user, self.desktop
        user.edit("Two")
        user.picture("sheet")
        desktop.click(*user.view("NSButton", "Cancel", window=0).middle)
        expect("the window below a sheet takes no clicks", len(user.windows()), 2)
        desktop.press_key("ctrl+a")
        desktop.type_text("Two & a half")
        user.press("Use this Setting")
        user.wait_for_sheet_to_end()
        user.expect_rows([FIRST, "Two & a half", self.file.name, "Four", "Recent Items", "Three", "Five", "One"])
        user.drag_to_trash("Four")
        user.picture_puff()
        user.expect_rows([FIRST, "Two & a half", self.file.name, "Recent Items", "Three", "Five", "One"])
        user.click_row("Five")
        desktop.press_key("Delete")
        user.expect_rows([FIRST, "Two & a half", self.file.name, "Recent Items", "Three", "One"])
        user.pick(PICKED, above="One")
        user.expect_rows([FIRST, "Two & a half", self.file.name, "Recent Items", "Three", PICKED, "One"])

    def apply(self):
        """Applies what was arranged. Returns the titles that the menu has then."""
        user = self.user
        user.press("Apply")
        user.wait_until_closed()
        wanted = [FIRST, "Two & a half", self.file.name, "Recent Items", "Three", PICKED, "One"]
        stored = stored_items(self.settings)
        expect("the stored list", stored_titles(self.settings), wanted)
        expect("the stored kinds", [item["menuItemType"] for item in stored], [
            "fixedAppPreferences", "plaintext", "arbitraryPath", "recentItems", "plaintext", "arbitraryPath", "plaintext"])
        expect("the dropped file's path", stored[2]["unixPath"], str(self.file))
        return wanted

    # --- all of it --------------------------------------------------------------------------------------------------

    def by_keys(self):
        self.cancel()
        self.arrange_by_keys()
        self.sheets_by_keys()

    def with_other_programs(self):
        self.reset()
        self.other_programs()
        self.drag_outlives_window()

    def by_pointer(self):
        """Arranges the list, applies it, and opens the menu to see it there."""
        self.arrange()
        self.edit_and_remove()
        self.user.expect_menu(self.apply())
