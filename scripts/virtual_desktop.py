"""A separate desktop for trying programs without a screen: a virtual X server, a session bus, a window manager and a
panel with a status bar, with a home directory that is deleted afterwards.

Everything started here, and everything that was started by it, is a descendant of this process (orphans come
back to it, see PR_SET_CHILD_SUBREAPER) and is ended by VirtualDesktop.__exit__.
"""

import ctypes
import os
import re
import shutil
import signal
import subprocess
import tempfile
import time
from collections import Counter
from contextlib import contextmanager
from pathlib import Path

from panel_settings import LXQT_PANEL_SETTINGS, PANEL_HEIGHT, PANEL_SETTINGS

POLL = 0.02
WIDTH, HEIGHT = 1280, 800


class DesktopError(Exception):
    """Says what was waited for, and what was there instead."""


# A file manager of which only the bus's side is there.
FILE_MANAGER = '''
import sys
from gi.repository import Gio, GLib
node = Gio.DBusNodeInfo.new_for_xml(
    "<node><interface name='org.freedesktop.FileManager1'><method name='ShowItems'>"
    "<arg type='as' direction='in'/><arg type='s' direction='in'/></method></interface></node>")
def called(connection, sender, path, interface, method, arguments, invocation):
    with open(sys.argv[1], "a") as shown:
        print(*arguments.unpack()[0], file=shown)
    invocation.return_value(None)
def acquired(connection, name):
    connection.register_object("/org/freedesktop/FileManager1", node.interfaces[0], called, None, None)
Gio.bus_own_name(Gio.BusType.SESSION, "org.freedesktop.FileManager1", 0, acquired, None, None)
GLib.MainLoop().run()
'''


def wait_for(what, condition, seconds=20):
    """Calls `condition` until it returns a true value, and returns that. Raises DesktopError with `what` after the
    deadline."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise DesktopError(f"waited {seconds} s in vain for {what}")
        time.sleep(POLL)


class VirtualDesktop:
    """To be used in a `with` statement. `log` is the file for the output of the desktop's programs. `host` shows status
    items: "xfce4-panel", "lxqt-panel", "trayer" (the older protocol) or "none"."""

    width, height = WIDTH, HEIGHT

    def __init__(self, log, host="xfce4-panel", window_manager=("xfwm4", "--compositor=off")):
        self.window_manager = window_manager
        self.log = open(log, "wb")
        self.host = host
        self.root = Path(tempfile.mkdtemp(prefix="quillbox-desktop-"))
        self.home = self.root / "home"
        self.pointer = (self.width // 2, self.height // 2)
        runtime = self.root / "runtime"
        self.environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin",
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.home / ".config"),
            "XDG_DATA_HOME": str(self.home / ".local/share"),
            "XDG_CACHE_HOME": str(self.home / ".cache"),
            "XDG_STATE_HOME": str(self.home / ".local/state"),
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_DATA_DIRS": f"{self.root / 'local/share'}:/usr/local/share:/usr/share",
            "XDG_CURRENT_DESKTOP": "XFCE",
            "XDG_SESSION_TYPE": "x11",
            "LC_ALL": "C.UTF-8",
            "TZ": "UTC",
            "NO_AT_BRIDGE": "1",
            "GIO_USE_VFS": "local",
        }
        for directory in (self.home / ".config", self.home / ".local/share", runtime):
            directory.mkdir(parents=True)
        runtime.chmod(0o700)

    def __enter__(self):
        ctypes.CDLL(None).prctl(36, 1, 0, 0, 0)  # PR_SET_CHILD_SUBREAPER
        try:
            self._start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for signal_number, seconds in ((signal.SIGTERM, 3), (signal.SIGKILL, 3)):
            deadline = time.monotonic() + seconds
            for pid in descendants(os.getpid()):
                try:
                    os.kill(pid, signal_number)
                except ProcessLookupError:
                    pass
            while descendants(os.getpid()) and time.monotonic() < deadline:
                reap()
                time.sleep(POLL)
        reap()
        self.log.close()
        shutil.rmtree(os.fsencode(self.root), ignore_errors=True)

    def _start(self):
        self._start_server()
        read_end, write_end = os.pipe()
        # Its output includes that of the programs that it starts.
        self.start(["dbus-daemon", "--session", "--nofork", f"--print-address={write_end}"], pass_fds=[write_end])
        os.close(write_end)
        with os.fdopen(read_end) as line:
            address = line.readline().strip()
        if not address:
            raise DesktopError("dbus-daemon did not start")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        self._start_session()

    def _start_server(self):
        read_end, write_end = os.pipe()
        server = self.start(["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{self.width}x{self.height}x24",
                             "-nolisten", "tcp", "-noreset", "-wr"], pass_fds=[write_end])
        os.close(write_end)
        with os.fdopen(read_end) as number:
            display = number.readline().strip()
        if not display:
            raise DesktopError(f"Xvfb did not start (exit code {server.wait()})")
        self.environment["DISPLAY"] = f":{display}"

    def _start_session(self):
        self.start(list(self.window_manager))
        if self.host == "none":
            wait_for("the window manager", lambda: b"# 0x" in self.output("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
            return
        if self.host == "trayer":
            self.start(["trayer", "--edge", "top", "--align", "left", "--height", str(PANEL_HEIGHT), "--widthtype",
                        "request", "--SetDockType", "true", "--SetPartialStrut", "true"])
        elif self.host == "lxqt-panel":
            settings = self.home / ".config/lxqt/panel.conf"
            settings.parent.mkdir(parents=True)
            settings.write_text(LXQT_PANEL_SETTINGS)
            self.start(["lxqt-panel"])
        else:
            settings = self.home / ".config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"
            settings.parent.mkdir(parents=True, exist_ok=True)
            settings.write_text(PANEL_SETTINGS)
            self.start(["xfce4-panel", "--disable-wm-check"])
        if self.has_watcher():
            self.wait_for_name("org.kde.StatusNotifierWatcher")
        # Programs place their menus by the work area that the window manager announces: the screen without the panel.
        wait_for("the work area below the panel", lambda: self.work_area_top() >= PANEL_HEIGHT)

    def has_watcher(self):
        return self.host.endswith("-panel")

    def work_area_top(self):
        area = re.search(r"= \d+, (\d+),", self.output("xprop", "-root", "_NET_WORKAREA").decode())
        return int(area[1]) if area else 0

    def start_accessibility(self):
        """Starts the bus on which assistive technologies talk to programs, so that this process can become one."""
        self.environment.pop("NO_AT_BRIDGE", None)
        self.start(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        self.wait_for_name("org.a11y.Bus")
        os.environ.update({name: self.environment[name] for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")
                           if name in self.environment})

    # --- programs ---------------------------------------------------------------------------------------------

    def start(self, command, **options):
        options.setdefault("stdout", self.log)
        return subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL, stderr=self.log,
                                cwd=self.home, start_new_session=True, **options)

    def output(self, *command, check=True):
        done = subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, capture_output=True, timeout=30)
        if check and done.returncode:
            raise DesktopError(f"{' '.join(command)}: exit code {done.returncode}: "
                               f"{done.stderr.decode(errors='replace').strip()}")
        return done.stdout

    def start_file_manager(self):
        """Starts what shows files when it is asked over the bus. Returns the file to which it writes what to show."""
        shown = self.root / "shown"
        self.start(["python3", "-c", FILE_MANAGER, str(shown)])
        self.wait_for_name("org.freedesktop.FileManager1")
        return shown

    def wait_for_name(self, name):
        self.output("gdbus", "wait", "--session", "--timeout", "20", name)

    def activate_action(self, name):
        """Asks Quillbox for one of its actions, as a launcher would, and returns when it was carried out."""
        self.output("gdbus", "call", "--session", "--dest", "org.quillbox.Quillbox",
                    "--object-path", "/org/quillbox/Quillbox",
                    "--method", "org.freedesktop.Application.ActivateAction", name, "@av []", "@a{sv} {}")

    # --- the screen -------------------------------------------------------------------------------------------

    def picture(self, path):
        self.output("import", "-silent", "-window", "root", str(path))

    def pixels(self, height):
        """Returns the pixels in the upper part of the screen with that height, three bytes each, row by row."""
        return self.output("import", "-silent", "-window", "root", "-crop", f"{self.width}x{height}+0+0", "+repage",
                           "-depth", "8", "rgb:-")

    def wait_for_icon(self, still_possible=lambda: True):
        """Waits until the only status item is registered and its icon no longer moves. Returns the middle of the icon.
        `still_possible` is called in the meantime and raises an error if there is nothing to wait for any more."""
        if self.has_watcher():
            wait_for("a status item", lambda: still_possible() and re.search(rb"['\"]", self.output(
                "gdbus", "call", "--session", "--dest", "org.kde.StatusNotifierWatcher",
                "--object-path", "/StatusNotifierWatcher", "--method", "org.freedesktop.DBus.Properties.Get",
                "org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems")))
        seen = [None]

        def drawn():
            still_possible()
            seen.append(self.find_icon())
            return seen[-1] if seen[-1] == seen[-2] else None
        return wait_for("the status item's icon on the panel", drawn)

    def find_icon(self):
        """Returns the middle of the icon, or None while it is not there."""
        if self.has_watcher():
            return self.first_on_panel()
        # In the older tray, and on the program's own strip, the icon is in a small window of the program.
        for window in self.output("xdotool", "search", "--onlyvisible", "--class", "quillbox", check=False).split():
            values = dict(line.split("=") for line in self.output(
                "xdotool", "getwindowgeometry", "--shell", window.decode(), check=False).decode().split())
            if values and int(values["WIDTH"]) <= 2 * PANEL_HEIGHT:
                return (int(values["X"]) + int(values["WIDTH"]) // 2, int(values["Y"]) + int(values["HEIGHT"]) // 2)
        return None

    def focused_window(self):
        """Something that is the same as long as one window has the focus."""
        return self.output("xdotool", "getwindowfocus")

    def popup_origin(self):
        """Returns the place on the screen that Quillbox takes for (0, 0)."""
        return 0, 0

    def windows_titled(self, title):
        """Returns the places on the screen, as (x, y), of the contents of all visible windows with that title."""
        found = self.output("xdotool", "search", "--onlyvisible", "--name", f"^{re.escape(title)}$", check=False)
        told = [self.output("xwininfo", "-id", window, check=False).decode() for window in found.decode().split()]
        return [tuple(map(int, place)) for text in told
                if len(place := re.findall(r"Absolute upper-left [XY]: +(-?\d+)", text)) == 2]

    def is_in_place(self, title, place, tolerance):
        """Whether the window with that title is visible and its contents are there, give or take some pixels."""
        return any(abs(x - place[0]) <= tolerance and abs(y - place[1]) <= tolerance
                   for x, y in self.windows_titled(title))

    def offsets_of_windows(self, contents):
        """Returns for each of Quillbox's windows (x, y): what has to be added to the places that it tells of its views
        to have those on the screen. `contents` are its windows' topmost views."""
        return [(0, 0)] * len(contents)

    def put_window(self, title, x, y):
        """Waits for the window with that title, which asks for that place itself."""
        wait_for(f"the window \"{title}\"", lambda: self.windows_titled(title))

    def first_on_panel(self):
        """Returns the middle of the first thing on the panel that is not background, or None if the panel is empty."""
        data = self.pixels(PANEL_HEIGHT)
        pixels = [data[i:i + 3] for i in range(0, len(data), 3)]
        # The edges of the panel have lines and a handle in other shades; the icon is between them.
        inside = range(4, self.width - 4)
        rows = [pixels[y * self.width:(y + 1) * self.width] for y in range(4, PANEL_HEIGHT - 4)]
        background = Counter(row[x] for row in rows for x in inside).most_common(1)[0][0]
        columns = [x for x in inside if any(row[x] != background for row in rows)]
        if not columns:
            return None
        width = next((i for i, x in enumerate(columns) if x != columns[0] + i), len(columns))
        return (columns[0] + width // 2, PANEL_HEIGHT // 2) if width >= 4 else None

    def move_pointer(self, x, y):
        """Moves the pointer as a hand would: in a straight line of many small steps."""
        from_x, from_y = self.pointer
        steps = max(2, max(abs(x - from_x), abs(y - from_y)) // 12)
        command = ["xdotool"]
        for step in range(1, steps + 1):
            command += ["mousemove", str(from_x + (x - from_x) * step // steps),
                        str(from_y + (y - from_y) * step // steps), "sleep", "0.004"]
        self.output(*command)
        self.pointer = (x, y)

    def click(self, x, y, button=1):
        self.move_pointer(x, y)
        self.output("xdotool", "click", str(button))

    def press_button(self):
        self.output("xdotool", "mousedown", "1", "sleep", "0.1")

    def release_button(self):
        self.output("xdotool", "mouseup", "1")

    def nudge_pointer(self, distance):
        """Moves the pointer a little to the right, and pauses as a hand would."""
        self.output("xdotool", "mousemove_relative", "--", str(distance), "0", "sleep", "0.2")

    def drag(self, start, end, before_release=lambda: None):
        """Drags with the first button from one point to the other, and pauses before the release as a user would."""
        self.move_pointer(*start)
        self.press_button()
        self.move_pointer(*end)
        # The programs exchange messages during a drag; the last one tells where it would be dropped.
        self.nudge_pointer(1)
        self.nudge_pointer(-1)
        before_release()
        self.release_button()

    def close_window_while_dragging(self):
        """Closes the active window by a key while a button is held."""
        self.press_key("alt+F4")

    @contextmanager
    def holding(self, key):
        self.output("xdotool", "keydown", key)
        try:
            yield
        finally:
            self.output("xdotool", "keyup", key)

    def press_key(self, name):
        """`name` is that of a key, after those of modifiers that are held: "ctrl+shift+z"."""
        self.output("xdotool", "key", name)

    def type_text(self, text):
        self.output("xdotool", "type", "--delay", "20", text)

    def copy_file(self, path):
        """Puts the file into the clipboard, as a file manager does."""
        addresses = self.root / "copied"
        addresses.write_text(path.as_uri() + "\r\n")
        clipboard = ["xclip", "-selection", "clipboard", "-t", "text/uri-list"]
        self.start([*clipboard, "-quiet", str(addresses)])
        wait_for("the copied file", lambda: path.name.encode() in self.output(*clipboard, "-o", check=False))


def descendants(ancestor):
    """Returns the processes that descend from `ancestor`, without zombies."""
    children = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                state, parent = Path("/proc", entry, "stat").read_text(errors="replace").rpartition(")")[2].split()[:2]
            except (OSError, ValueError):
                continue
            if state not in "ZX":
                children.setdefault(int(parent), []).append(int(entry))
    found, waiting = [], [ancestor]
    while waiting:
        for child in children.get(waiting.pop(), []):
            found.append(child)
            waiting.append(child)
    return found


def reap():
    """Reaps the children that have ended, including adopted ones."""
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        pass
