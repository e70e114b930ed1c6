"""GNOME Shell without a screen: its virtual pointer and keyboard, the rows of its open menus, and its pictures. All of
this uses the shell's own evaluation of JavaScript."""

import json
import time
from contextlib import contextmanager
from dataclasses import dataclass, field

from running_quillbox import Row
from virtual_desktop import DesktopError, wait_for

from .session import RealSession

# From version 45 on, the shell's modules are loaded in another way, and only after they were asked for.
SET_UP = """
if (!globalThis.qb) {
    const Clutter = imports.gi.Clutter, seat = Clutter.get_default_backend().get_default_seat();
    globalThis.qb = {
        pointer: seat.create_virtual_device(Clutter.InputDeviceType.POINTER_DEVICE),
        keyboard: seat.create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE),
        now: () => imports.gi.GLib.get_monotonic_time(),
    };
    try {
        qb.Main = imports.ui.main;
        qb.Menu = imports.ui.popupMenu;
    } catch (e) {
        import('resource:///org/gnome/shell/ui/main.js').then(module => { qb.Main = module; });
        import('resource:///org/gnome/shell/ui/popupMenu.js').then(module => { qb.Menu = module; });
    }
}
!!qb.Main && !!qb.Menu"""

# A row is [depth, title, x, y, width, height, can be chosen, has an open submenu, top and bottom of the visible part].
ROWS = """(() => {
    const rows = [];
    const placeOf = actor => [...actor.get_transformed_position(), ...actor.get_transformed_size()].map(Math.round);
    const walk = (menu, depth, top, bottom) => {
        for (const actor of menu.box.get_children()) {
            const item = actor._delegate;
            if (!(item instanceof qb.Menu.PopupBaseMenuItem) || !actor.visible) continue;
            // A row has no text until its properties have come.
            const title = item instanceof qb.Menu.PopupSeparatorMenuItem ? '' : item.label && item.label.text || '…';
            const isOpen = !!item.menu && item.menu.isOpen;
            rows.push([depth, title, ...placeOf(actor), !!item.sensitive, isOpen, top, bottom]);
            if (isOpen) {
                const [, y, , height] = placeOf(item.menu.actor);
                walk(item.menu, depth + 1, Math.max(top, y), Math.min(bottom, y + height));
            }
        }
    };
    for (const name in qb.Main.panel.statusArea) {
        const button = qb.Main.panel.statusArea[name];
        if (name.startsWith('appindicator-') && button.menu && button.menu.isOpen) {
            const [, y, , height] = placeOf(button.menu.box);
            walk(button.menu, 0, y, y + height);
        }
    }
    return rows;
})()"""

ICON = """(() => {
    for (const name in qb.Main.panel.statusArea) {
        const button = qb.Main.panel.statusArea[name];
        if (!name.startsWith('appindicator-') || !button.mapped) continue;
        const [x, y] = button.get_transformed_position(), [width, height] = button.get_transformed_size();
        if (width > 0) return [Math.round(x + width / 2), Math.round(y + height / 2)];
    }
    return null;
})()"""

# The oldest first.
WINDOWS = """global.get_window_actors().filter(a => a.visible).map(a => a.meta_window)
    .sort((a, b) => a.get_stable_sequence() - b.get_stable_sequence()).map(w => {
        const frame = w.get_frame_rect();
        return [w.get_wm_class() || '', w.get_title() || '', frame.x, frame.y, frame.width, frame.height];
    })"""
STANDING_WINDOWS = WINDOWS.replace("a.visible", "a.visible && a.scale_x == 1 && a.scale_y == 1")

KEYS = {"Escape": 0xff1b, "Return": 0xff0d, "Tab": 0xff09, "Delete": 0xffff, "Up": 0xff52, "Down": 0xff54,
        "space": 0x20, "F2": 0xffbf, "F4": 0xffc1, "ctrl": 0xffe3, "shift": 0xffe1, "alt": 0xffe9}


@dataclass
class ShellRow(Row):
    """A row of a menu that the shell draws; `top` and `bottom` are the limits of the visible part of its level."""

    depth: int = 0
    is_sensitive: bool = True
    is_open: bool = False
    top: int = 0
    bottom: int = 0
    below: list = field(default_factory=list)

    @property
    def is_in_sight(self):
        return self.top <= self.middle[1] < self.bottom


class GnomeSession(RealSession):
    """A Wayland session of GNOME Shell with its AppIndicator extension, on a virtual screen."""

    file_manager = ("nautilus", "--new-window")

    def __init__(self, log):
        super().__init__(log, "gnome-shell", XDG_SESSION_TYPE="wayland", XDG_CURRENT_DESKTOP="GNOME",
                         DESKTOP_SESSION="gnome", XDG_SESSION_CLASS="user", XDG_SESSION_ID="1",
                         LIBGL_ALWAYS_SOFTWARE="1")

    def _start_server(self):
        pass

    def _start_session(self):
        import gi
        gi.require_version("Gio", "2.0")
        from gi.repository import Gio, GLib
        self.gio, self.glib = Gio, GLib
        for schema, key, value in (
                ("org.gnome.shell", "welcome-dialog-last-shown-version", "'99'"),
                ("org.gnome.shell", "enabled-extensions", "['ubuntu-appindicators@ubuntu.com']"),
                ("org.gnome.desktop.session", "idle-delay", "0"),
                ("org.gnome.desktop.screensaver", "lock-enabled", "false"),
                ("org.gnome.mutter", "auto-maximize", "false")):
            self.output("gsettings", "set", schema, key, value)
        self.start_host()

    def start_host(self):
        self.shell = self.start(["gnome-shell", "--headless", "--virtual-monitor", f"{self.width}x{self.height}",
                                 "--unsafe-mode"])
        self.wait_for_name("org.gnome.Shell")
        self.bus = self.gio.DBusConnection.new_for_address_sync(
            self.environment["DBUS_SESSION_BUS_ADDRESS"],
            self.gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | self.gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
            None, None)
        wait_for("the shell's modules", lambda: self.evaluate(SET_UP, quiet=True))
        wait_for("the shell to have started",
                 lambda: self.evaluate("!qb.Main.layoutManager._startingUp"))
        self.evaluate("qb.Main.overview.hide()")
        wait_for("the overview to close", lambda: not self.evaluate("qb.Main.overview.visible"))
        self.environment["WAYLAND_DISPLAY"] = "wayland-0"
        # These are the values that programs of the shell get. The X server is started when one of them connects.
        for name in ("DISPLAY", "XAUTHORITY"):
            if value := self.evaluate(f"imports.gi.GLib.getenv('{name}')"):
                self.environment[name] = value
        self.wait_for_name("org.kde.StatusNotifierWatcher")

    def restart_host(self):
        """Disables the extension and enables it again. The shell itself can't be restarted: every program on its
        Wayland display would end with it."""
        for word in ("disable", "enable"):
            self.output("gnome-extensions", word, "ubuntu-appindicators@ubuntu.com")
            wait_for(f"the extension to {word}", lambda: (self.evaluate(ICON) is None) == (word == "disable"))

    def evaluate(self, script, quiet=False):
        try:
            done, value = self.bus.call_sync(
                "org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "Eval", self.glib.Variant("(s)", (script,)),
                None, self.gio.DBusCallFlags.NONE, 20000, None).unpack()
        except self.glib.Error as error:
            done, value = False, error.message
        if not done and not quiet:
            raise DesktopError(f"the shell can't evaluate {script[:60]!r}: {value}")
        return json.loads(value) if done and value else None

    # --- the screen -------------------------------------------------------------------------------------------

    def picture(self, path):
        done, _ = self.bus.call_sync(
            "org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot", "Screenshot",
            self.glib.Variant("(bbs)", (True, False, str(path))), None, self.gio.DBusCallFlags.NONE, 20000,
            None).unpack()
        if not done:
            raise DesktopError(f"the shell took no picture {path}")

    def before_icon(self):
        wait_for("the icon of an earlier Quillbox to go", lambda: self.find_icon() is None)

    def find_icon(self):
        return self.evaluate(ICON)

    def windows_on_screen(self):
        """(class, title, x, y, width, height) of each window, frames without their shadows."""
        return [tuple(window) for window in self.evaluate(WINDOWS)]

    def windows_titled(self, title):
        # Until a window has its place and its size, the shell draws it smaller.
        return [tuple(window[2:4]) for window in self.evaluate(STANDING_WINDOWS) if window[1] == title]

    def is_in_place(self, title, place, tolerance):
        return bool(self.windows_titled(title))  # Places come from the shell.

    def offsets_of_windows(self, contents):
        # A Wayland program does not know where its windows are. The frame that the program draws is as wide at the
        # bottom as at the sides.
        frames = [window[2:] for window in self.evaluate(WINDOWS) if window[1] == "Quillbox Preferences"]
        if len(frames) != len(contents):
            return super().offsets_of_windows(contents)
        offsets = []
        for (x, y, width, height), content in zip(frames, contents):
            border = (width - content.width) // 2
            offsets.append((x + border - content.x, y + height - border - content.height - content.y))
        return offsets

    def put_window(self, title, x, y):
        super().put_window(title, x, y)
        self.evaluate("global.get_window_actors().map(a => a.meta_window).filter(w => w.get_title() == "
                      f"{json.dumps(title)}).forEach(w => w.move_frame(true, {x}, {y}))")

    def arrange(self, window):
        """Places the windows beside each other, as far as the screen allows."""
        for name, x, width in ((window[0], 0, 620), ("Quillbox", 640, 0)):
            self.evaluate("global.get_window_actors().map(a => a.meta_window).filter(w => w.get_wm_class()"
                          f".endsWith({json.dumps(name)})).forEach(w => {width} ? w.move_resize_frame(true, {x}, 60, {width}, 520) "
                          f": w.move_frame(true, {x}, 60))")

    def expect_idle_pointer(self):
        """Expects that the shell no longer considers any program as being started."""
        wait_for("the shell to know that nothing is being started any more", lambda: self.evaluate(
            "imports.gi.Shell.WindowTracker.get_default().get_startup_sequences()"
            ".filter(s => !s.get_completed()).length") == 0, 3)

    def move_pointer(self, x, y):
        from_x, from_y, *_ = self.evaluate("global.get_pointer()")
        steps = max(2, int(max(abs(x - from_x), abs(y - from_y))) // 20)
        for step in range(1, steps + 1):
            self.evaluate(f"qb.pointer.notify_absolute_motion(qb.now(), {from_x + (x - from_x) * step / steps}, "
                          f"{from_y + (y - from_y) * step / steps}); 1")
            time.sleep(0.006)
        self.pointer = (x, y)

    def press(self, button, is_down):
        self.evaluate(f"qb.pointer.notify_button(qb.now(), {button}, {int(is_down)}); 1")

    def click(self, x, y, button=1):
        self.move_pointer(x, y)
        self.press({1: 1, 2: 2, 3: 3}[button], True)
        time.sleep(0.04)
        self.press(button, False)

    def scroll(self, steps):
        """Turns the wheel down by that many steps."""
        self.evaluate(f"for (let i = 0; i < {steps}; ++i) "
                      "qb.pointer.notify_discrete_scroll(qb.now(), imports.gi.Clutter.ScrollDirection.DOWN, 0); 1")

    def press_button(self):
        self.press(1, True)
        time.sleep(0.3)
        self.move_pointer(self.pointer[0] + 10, self.pointer[1] + 6)
        time.sleep(0.3)

    def release_button(self):
        self.press(1, False)

    def nudge_pointer(self, distance):
        time.sleep(0.3)
        self.move_pointer(self.pointer[0] + distance, self.pointer[1])
        time.sleep(0.3)

    def close_window_while_dragging(self):
        """The shell passes on no keys while something is dragged, so the window is closed as from the overview."""
        self.evaluate("global.display.get_focus_window().delete(global.get_current_time())")

    def press_keyval(self, value, is_down):
        self.evaluate(f"qb.keyboard.notify_keyval(qb.now(), {value}, {int(is_down)}); 1")

    def press_key(self, name):
        *modifiers, key = name.split("+")
        values = [KEYS[word] if word in KEYS else ord(word) for word in (*modifiers, key)]
        for value in values:
            self.press_keyval(value, True)
        for value in reversed(values):
            self.press_keyval(value, False)

    def type_text(self, text):
        for letter in text:
            self.press_keyval(ord(letter), True)
            self.press_keyval(ord(letter), False)

    @contextmanager
    def holding(self, key):
        self.press_keyval(KEYS[key], True)
        try:
            yield
        finally:
            self.press_keyval(KEYS[key], False)

    # --- the menu -----------------------------------------------------------------------------------------------

    def menu_rows(self):
        """Returns the rows of the open menu; the rows of an open submenu follow the row that opened it."""
        top, path = [], []
        for depth, title, x, y, width, height, sensitive, is_open, above, below in self.evaluate(ROWS):
            row = ShellRow(x, y, width, height, title, depth, sensitive, is_open, above, below)
            del path[depth:]
            (path[-1].below if path else top).append(row)
            path.append(row)
        return top


