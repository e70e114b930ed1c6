"""A Wayland desktop for programs that are tried without a screen: sway, shown in a virtual X server, whose pointer
events are sway's. Where there is a panel it is waybar, which draws the menus of status items itself."""

import json
import os
import re
import sys
from dataclasses import dataclass
from pathlib import Path

from running_quillbox import Row
from virtual_desktop import PANEL_HEIGHT, DesktopError, VirtualDesktop, wait_for

BACKGROUND = bytes((51, 102, 153))
SWAY_SETTINGS = f"""
output * resolution {{width}}x{{height}} background #{BACKGROUND.hex()} solid_color
xwayland disable
for_window [app_id="Quillbox$"] move position 0 0
"""
WAYBAR_SETTINGS = {"layer": "top", "position": "top", "height": PANEL_HEIGHT,
                   "modules-left": ["tray"], "tray": {"icon-size": 20}}

# No client is told where on the screen a menu is, so rows begin with a stripe that is found in the picture of the
# screen: in a colour that nothing else has, and wider than the pointer, which hides a part of it.
STRIPE = bytes((255, 0, 255))
STRIPE_WIDTH = 24
WAYBAR_STYLE = f"""
* {{ font-family: DejaVu Sans; font-size: 11px; }}
window#waybar {{ background: #dddddd; color: #000000; }}
#tray {{ padding: 0 6px; }}
menuitem {{ border-left: {STRIPE_WIDTH}px solid #{STRIPE.hex()}; }}
"""


def leave_root():
    """sway refuses root. Runs this program again as an ordinary user, in a namespace in which root's files are that
    user's: the program can be read wherever it was built, and what is made belongs to root."""
    if os.geteuid() == 0:
        ordinary = ["unshare", "--user", "--map-user=65534", "--map-group=65534"]
        os.execvp(ordinary[0], [*ordinary, sys.executable, *sys.argv])


class WaylandDesktop(VirtualDesktop):
    """`host` is "waybar" or, for no status bar, "sway"."""

    # Wide enough for the whole walk's menus side by side.
    width, height = 1920, 800

    def __init__(self, log, host="waybar"):
        super().__init__(log, host)
        self.environment.update(XDG_SESSION_TYPE="wayland", XDG_CURRENT_DESKTOP="sway",
                                LSAN_OPTIONS=f"suppressions={Path(__file__).with_name('leaks_of_libraries.txt')}")

    def has_watcher(self):
        return self.host == "waybar"

    def _start_session(self):
        settings = self.root / "sway"
        settings.write_text(SWAY_SETTINGS.format(width=self.width, height=self.height))
        nested = {"WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman", "WLR_NO_HARDWARE_CURSORS": "1"}
        sway = self.start(["env", *(f"{name}={value}" for name, value in nested.items()), "sway", "-c", str(settings)])

        def socket(pattern):
            if sway.poll() is not None:
                raise DesktopError(f"sway has ended (exit code {sway.returncode})")
            return next((path for path in Path(self.environment["XDG_RUNTIME_DIR"]).glob(pattern)
                         if path.suffix != ".lock"), None)
        self.environment["WAYLAND_DISPLAY"] = wait_for("sway's display", lambda: socket("wayland-*")).name
        self.environment["SWAYSOCK"] = str(wait_for("sway's other socket", lambda: socket("sway-ipc.*")))
        wait_for("sway to fill the screen", lambda: self.pixels(self.height).endswith(BACKGROUND))
        # Menus are read where assistive technologies read them.
        self.start_accessibility()
        if self.host == "waybar":
            directory = self.home / ".config/waybar"
            directory.mkdir()
            (directory / "config").write_text(json.dumps(WAYBAR_SETTINGS))
            (directory / "style.css").write_text(WAYBAR_STYLE)
            self.start(["waybar"])
            self.wait_for_name("org.kde.StatusNotifierWatcher")
            wait_for("the work area below the panel", lambda: self.work_area_top() >= PANEL_HEIGHT)

    def work_area_top(self):
        return min(workspace["rect"]["y"] for workspace in self.tell_sway("get_workspaces"))

    def find_icon(self):
        if self.host == "waybar":
            return super().find_icon()
        area = self.strip_area()
        return area and (area["x"] + area["width"] // 2, area["y"] + area["height"] // 2)

    def popup_origin(self):
        """A program isn't told where its windows are: it takes the strip's corner for that of the screen."""
        area = self.strip_area() or {"x": 0, "y": 0}  # Without a strip no menu of ours is open.
        return area["x"], area["y"]

    def strip_area(self):
        """The rectangle of the strip's contents on the screen, None while there is no strip."""
        for node in self.nodes():
            if (node.get("app_id") or "").endswith("Quillbox") and node["name"] == "Quillbox":
                frame, inside = node["rect"], node["window_rect"]
                return {"x": frame["x"] + inside["x"], "y": frame["y"] + inside["y"],
                        "width": inside["width"], "height": inside["height"]}
        return None

    def focused_window(self):
        return next((node["id"] for node in self.nodes() if node["focused"]), None)

    def nodes(self):
        """What sway has on the screen, windows among it."""
        waiting = [self.tell_sway("get_tree")]
        while waiting:
            yield (node := waiting.pop())
            waiting += node["nodes"] + node["floating_nodes"]

    def put_window(self, title, x, y):
        """Waits for the window with that title. It has the whole screen, since windows are tiled."""
        wait_for(f"the window \"{title}\"", lambda: any(node.get("name") == title for node in self.nodes()))

    def tell_sway(self, question):
        return json.loads(self.output("swaymsg", "-r", "-t", question))


@dataclass
class PanelRow(Row):
    """A row of a menu that waybar draws. `x` and `y` are those in the menu until the menu was found on the screen."""

    accessible: object
    level: int
    is_found: bool = False


class PanelMenu:
    """The menus that waybar has open: their rows by their accessible names, their places by the stripes."""

    def __init__(self, desktop):
        # It connects to the bus of the environment as soon as it is loaded.
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib
        self.atspi, self.glib, self.desktop = Atspi, GLib, desktop

    def open_levels(self):
        """The open menus, the top level first, each a list of its rows."""
        while self.glib.MainContext.default().iteration(False):
            pass
        try:
            return list(self.levels())
        except self.glib.Error:
            return []  # They change at this very moment.

    def levels(self):
        shown = self.top_rows()
        stripes = self.stripes() if shown else []
        level = 0
        while shown:
            rows = [self.row(accessible, level) for accessible in shown]
            if level < len(stripes):
                find(rows, *stripes[level])
            yield rows
            level += 1
            shown = next((below for accessible in shown if (below := self.showing(accessible))), [])

    def top_rows(self):
        for application in children(self.atspi.get_desktop(0)):
            if application.get_name() == "waybar":
                application.clear_cache()
                windows = [window for window in children(application) if window.get_role_name() == "window"]
                return next((rows for window in windows for menu in children(window)
                             if (rows := self.showing(menu))), [])
        return []

    def showing(self, accessible):
        return [child for child in children(accessible)
                if child.get_state_set().contains(self.atspi.StateType.SHOWING)]

    def row(self, accessible, level):
        at = accessible.get_extents(self.atspi.CoordType.WINDOW)
        title = "---" if accessible.get_role_name() == "separator" else accessible.get_name()
        return PanelRow(at.x, at.y, at.width, at.height, title, accessible, level)

    def stripes(self):
        """From left to right, each stripe's left edge and its (top, bottom) runs."""
        desktop = self.desktop
        data = desktop.pixels(desktop.height)
        found = {}
        for y in range(desktop.height):
            line = data[y * desktop.width * 3:(y + 1) * desktop.width * 3]
            for match in re.finditer(b"(?:%b){%d,}" % (STRIPE, STRIPE_WIDTH // 3), line):
                runs = found.setdefault(match.end() // 3 - STRIPE_WIDTH, [])
                if runs and runs[-1][1] == y:
                    runs[-1] = (runs[-1][0], y + 1)
                else:
                    runs.append((y, y + 1))
        return sorted(found.items())

    def hover(self, level, title):
        """Moves the pointer to that row once it is found, and waits until waybar highlights it; gives the row."""
        def place():
            rows = self.open_levels()[level:level + 1]
            return next((row for row in sum(rows, []) if row.title == title and row.is_found), None)
        row = wait_for(f"row \"{title}\" on the screen", place)
        # Into a submenu along the row that opened it: waybar takes a slanting way for one to the rows it crosses.
        x, y = row.middle
        self.desktop.move_pointer(x, self.desktop.pointer[1])
        self.desktop.move_pointer(x, y)

        def is_highlighted():
            row.accessible.clear_cache()
            if row.accessible.get_state_set().contains(self.atspi.StateType.SELECTED):
                return True
            # A hand is never still. Where waybar took the way for one into the submenu, it looks again when the
            # pointer moves.
            self.desktop.move_pointer(x + (1 if self.desktop.pointer[0] == x else 0), y)
            return False
        wait_for(f"waybar to highlight \"{title}\"", is_highlighted)
        return row


def children(accessible):
    return [child for i in range(accessible.get_child_count()) if (child := accessible.get_child_at_index(i))]


def find(rows, left, runs):
    """Gives the rows their places on the screen if they are those that the stripe belongs to."""
    titled = [row for row in rows if row.title != "---"]
    if not titled:
        return
    down = runs[0][0] - titled[0].y
    wanted = []
    for row in titled:
        top = row.y + down
        if wanted and wanted[-1][1] == top:
            wanted[-1] = (wanted[-1][0], top + row.height)
        else:
            wanted.append((top, top + row.height))
    if wanted == runs:
        for row in rows:
            row.x, row.y, row.is_found = left, row.y + down, True
