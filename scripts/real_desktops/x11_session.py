"""Desktops on X, each with its own session program in a virtual X server. On them Quillbox draws its menu itself."""

import os
import re
import signal

from virtual_desktop import DesktopError, wait_for

from .session import RealSession


class X11Session(RealSession):
    """`session` is the command of the session, `panel` the name of the program that shows the icon."""

    desktop_name, session, panel = "", (), ""

    def __init__(self, log):
        super().__init__(log, self.panel, XDG_SESSION_TYPE="x11", XDG_CURRENT_DESKTOP=self.desktop_name,
                         DESKTOP_SESSION=self.desktop_name.lower(), LIBGL_ALWAYS_SOFTWARE="1")
        self.without_icon = {}

    def _start_session(self):
        self.prepare()
        self.start(self.session)
        self.wait_for_panel()

    def prepare(self):
        """Makes the settings that a user would have made before."""

    def wait_for_panel(self):
        if self.has_watcher():
            wait_for("a status notifier watcher", lambda: self.has_name("org.kde.StatusNotifierWatcher"), 60)
        wait_for("the panel", self.panel_areas, 60)
        for area in self.panel_areas():
            self.unmoving(area)

    def has_name(self, name):
        return f"'{name}'".encode() in self.output(
            "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus",
            "--method", "org.freedesktop.DBus.ListNames")

    def processes(self, name):
        found = []
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{pid}/cmdline", "rb") as file:
                    command = file.read().split(b"\0")[0]
            except OSError:
                continue
            if os.path.basename(command).decode() == name:
                found.append(int(pid))
        return found

    def restart_host(self):
        """Ends the panel. The session starts it again; if it does not, this does."""
        before = self.processes(self.panel)
        if not before:
            raise DesktopError(f"{self.panel} does not run")
        for pid in before:
            os.kill(pid, signal.SIGTERM)
        wait_for(f"{self.panel} to end", lambda: not set(before) & set(self.processes(self.panel)))
        try:
            wait_for(f"the session to start {self.panel} again", lambda: self.processes(self.panel), 5)
        except DesktopError:
            self.start([self.panel])
        self.wait_for_panel()

    # --- windows -------------------------------------------------------------------------------------------------

    def window_tree(self):
        """Returns (id, name, class, width, height, x, y) of each window on the screen, the topmost first."""
        found = []
        for line in self.output("xwininfo", "-root", "-tree", check=False).decode(errors="replace").splitlines():
            parts = re.match(r'\s+(0x\w+) (?:"(.*)"|\(has no name\)): \((.*)\)\s+(\d+)x(\d+)\+-?\d+\+-?\d+\s+'
                             r'\+(-?\d+)\+(-?\d+)', line)
            if parts:
                found.append((parts[1], parts[2] or "", parts[3].partition(" ")[0].strip('"'),
                              *(int(parts[i]) for i in range(4, 8))))
        return found

    def panel_areas(self):
        """Returns the rectangles of the panels: x, y, width, height."""
        return sorted({(x, y, width, height) for identity, _, _, width, height, x, y in self.window_tree()
                       if width >= self.width * 2 // 3 and 16 <= height <= 80 and self.is_visible(identity)})

    def is_visible(self, identity):
        return b"IsViewable" in self.output("xwininfo", "-id", identity, check=False)

    def menu_windows(self):
        """Returns the menus that the host shows on the screen."""
        return {identity for identity, _, _, width, height, x, y in self.window_tree()
                if width > 60 and height > 30 and (width, height) != (self.width, self.height)
                and self.is_menu(identity)}

    def is_menu(self, identity):
        properties = self.output("xprop", "-id", identity, "_NET_WM_WINDOW_TYPE", check=False)
        return b"_MENU" in properties and self.is_visible(identity)

    def windows_on_screen(self):
        found = []
        clients = self.output("xprop", "-root", "_NET_CLIENT_LIST").decode()
        for identity in re.findall(r"0x\w+", clients):
            about = self.output("xwininfo", "-id", identity, "-all", check=False).decode(errors="replace")
            place = [re.search(rf"{what}:\s+(-?\d+)", about) for what in (
                "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")]
            name = re.search(r'Window id: \w+ "(.*)"', about)
            if all(place) and "IsViewable" in about:
                found.append((identity, name[1] if name else "", *(int(number[1]) for number in place)))
        return found

    def arrange(self, window):
        """Places the windows beside each other, as far as the screen allows."""
        for identity, title, *_ in self.windows_on_screen():
            if title == "Quillbox Preferences":
                self.output("xdotool", "windowmove", identity, str(self.width - 620), "60")
        self.output("xdotool", "windowsize", window[0], "640", "520", "windowmove", window[0], "0", "60")

    # --- the icon ------------------------------------------------------------------------------------------------

    def before_icon(self):
        self.without_icon = {area: self.unmoving(area) for area in self.panel_areas()}

    def find_icon(self):
        """Returns where a panel has changed since the icon was missing. Changes of another width are its clock."""
        for area, before in self.without_icon.items():
            left, top, width, height = area
            pixels = self.pixels_of(*area)
            columns = sorted({i // 3 % width for i in range(0, len(before), 3) if pixels[i:i + 3] != before[i:i + 3]})
            runs = []
            for x in columns:
                if runs and x - runs[-1][1] <= 3:
                    runs[-1][1] = x
                else:
                    runs.append([x, x])
            icons = [run for run in runs if 10 <= run[1] - run[0] <= 48]
            if icons:
                return left + sum(icons[0]) // 2, top + height // 2
        return None


class MateSession(X11Session):
    desktop_name, session, panel = "MATE", ("mate-session",), "mate-panel"
    file_manager = ("caja", "--no-desktop")

    def prepare(self):
        for schema, key, value in (("org.mate.session", "required-components-list", "['windowmanager', 'panel']"),
                                   ("org.mate.screensaver", "idle-activation-enabled", "false")):
            self.output("gsettings", "set", schema, key, value, check=False)


class CinnamonSession(X11Session):
    desktop_name, session, panel = "X-Cinnamon", ("cinnamon-session", "--session", "cinnamon2d"), "cinnamon"
    file_manager = ("nemo", "--no-desktop")

    def panel_areas(self):
        # Cinnamon draws its panel on the window that covers the screen.
        return [(0, self.height - 40, self.width, 40)] if self.has_name("org.Cinnamon") else []


class BudgieSession(X11Session):
    desktop_name, panel = "Budgie:GNOME", "budgie-panel"
    session = ("sh", "-c", "budgie-wm --x11 & sleep 3; exec budgie-panel")
    file_manager = ("nautilus", "--new-window")

    def has_watcher(self):
        return False  # Its tray has the older protocol.


class PlasmaSession(X11Session):
    desktop_name, session, panel = "KDE", ("startplasma-x11",), "plasmashell"
    file_manager = ("dolphin", "--new-window")
    version = "5"

    SETTINGS = {
        "startkderc": "[General]\nsystemdBoot=false\n",
        "ksplashrc": "[KSplash]\nEngine=none\nTheme=None\n",
        "kscreenlockerrc": "[Daemon]\nAutolock=false\nLockOnResume=false\n",
        "kwalletrc": "[Wallet]\nEnabled=false\nFirst Use=false\n",
        "baloofilerc": "[Basic Settings]\nIndexing-Enabled=false\n",
        "plasma-welcomerc": "[General]\nShouldShow=false\n",
    }

    def prepare(self):
        for name, settings in self.SETTINGS.items():
            (self.home / ".config" / name).write_text(settings)
        self.environment.update(KDE_FULL_SESSION="true", KDE_SESSION_VERSION=self.version, QT_QUICK_BACKEND="software",
                                KWIN_COMPOSE="N", DESKTOP_SESSION="plasma")

    def wait_for_panel(self):
        super().wait_for_panel()
        # The panel slides in, and its icons appear one by one.
        for _ in range(3):
            for area in self.panel_areas():
                self.unmoving(area)


class Plasma6Session(PlasmaSession):
    version = "6"


class PlasmaWaylandSession(PlasmaSession):
    """Plasma on Wayland, shown in a window of a virtual X server, whose pointer and keyboard are Plasma's."""

    session = ("startplasma-wayland",)
    # The size of that window.
    width, height = 1024, 768
    PANEL_HEIGHT = 44

    def prepare(self):
        super().prepare()
        self.environment.update(XDG_SESSION_TYPE="wayland", DESKTOP_SESSION="plasmawayland", KWIN_COMPOSE="Q")

    def wait_for_panel(self):
        self.environment["WAYLAND_DISPLAY"] = "wayland-0"
        wait_for("Plasma's status bar", lambda: self.has_name("org.kde.plasmashell"), 90)
        super().wait_for_panel()

    def panel_areas(self):
        # X knows nothing about the windows in Plasma's window.
        return [(0, self.height - self.PANEL_HEIGHT, self.width, self.PANEL_HEIGHT)]
