"""Measures popups from the X server's side, whatever program shows them: from an input sent to the server to the
first damage after which the popup can be read."""

import select
import time
from collections import Counter

from Xlib import XK, X, display
from Xlib.error import BadDrawable, BadMatch, BadWindow
from Xlib.ext import damage, xtest

CUT_OFF = 10  # seconds
REST = 0.2  # seconds without a change after which the screen counts as settled
LEAST_HEIGHT = 60  # lower popups are tool tips
# A strip along the left edge, where icons and names begin, has to have something drawn in each band of it.
STRIP_LEFT, STRIP_WIDTH, BAND = 6, 64, 40
LEAST_INK = 20  # pixels of a band


class PopupWatch:
    """Sends input to a display and sees what its screen does."""

    def __init__(self, display_name):
        self.x = display.Display(display_name)
        self.screen = self.x.screen()
        self.root = self.screen.root
        self.root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self.x.damage_query_version()
        self.root.damage_create(damage.DamageReportRawRectangles)
        self.popups = []
        self.x.sync()

    def move_to(self, x, y):
        xtest.fake_input(self.x, X.MotionNotify, x=x, y=y)
        self.settle()

    def click(self, button=1):
        xtest.fake_input(self.x, X.ButtonPress, button)
        xtest.fake_input(self.x, X.ButtonRelease, button)
        self.x.flush()

    def press_key(self, name):
        code = self.x.keysym_to_keycode(XK.string_to_keysym(name))
        xtest.fake_input(self.x, X.KeyPress, code)
        xtest.fake_input(self.x, X.KeyRelease, code)
        self.x.flush()

    def first_paint(self, send):
        """Calls `send`; the milliseconds until a popup that was not there can be read, or None after the cut-off."""
        self.settle()
        before = list(self.popups)
        start = time.monotonic()
        send()
        while (damaged := self._next_damage(start + CUT_OFF)) is not None:
            if any(self._is_readable(window) for window in self.popups if window not in before):
                return (damaged - start) * 1000
        return None

    def close_popups(self):
        """Presses Escape until no popup is left; False where one stays past the cut-off."""
        deadline = time.monotonic() + CUT_OFF
        while self._tall_popups() and time.monotonic() < deadline:
            count = len(self._tall_popups())
            self.press_key("Escape")
            while len(self._tall_popups()) == count and time.monotonic() < deadline:
                self._next_damage(min(deadline, time.monotonic() + REST))
        self.settle()
        return not self._tall_popups()

    def settle(self):
        """Waits until nothing has changed on the screen for a while."""
        deadline = time.monotonic() + CUT_OFF
        while time.monotonic() < deadline and self._next_damage(time.monotonic() + REST) is not None:
            pass

    def _next_damage(self, deadline):
        """When the screen was next heard to change (seconds), or None after `deadline`."""
        while True:
            while not self.x.pending_events():
                if not select.select([self.x], [], [], max(0, deadline - time.monotonic()))[0]:
                    return None
            now = time.monotonic()
            is_damaged = False
            for _ in range(self.x.pending_events()):
                event = self.x.next_event()
                if event.type == X.MapNotify and event.override:
                    self.popups.append(event.window)
                elif event.type in (X.UnmapNotify, X.DestroyNotify) and event.window in self.popups:
                    self.popups.remove(event.window)
                elif event.type == self.x.extension_event.DamageNotify:
                    is_damaged = True
            if is_damaged:
                return now

    def _tall_popups(self):
        return [window for window in self.popups if (area := self._area(window)) and area[3] >= LEAST_HEIGHT]

    def _area(self, window):
        """The window's rectangle on the screen, or None where it has gone."""
        try:
            shape = window.get_geometry()
        except (BadWindow, BadDrawable):
            return None
        left, top = max(0, shape.x), max(0, shape.y)
        return (left, top, min(self.screen.width_in_pixels, shape.x + shape.width) - left,
                min(self.screen.height_in_pixels, shape.y + shape.height) - top)

    def _is_readable(self, window):
        area = self._area(window)
        if not area or area[2] <= 2 * STRIP_LEFT or area[3] < LEAST_HEIGHT:
            return False
        left, top, width, height = area
        width = min(STRIP_WIDTH, width - 2 * STRIP_LEFT)
        try:
            data = self.root.get_image(left + STRIP_LEFT, top, width, height, X.ZPixmap, 0xFFFFFFFF).data
        except BadMatch:
            return False
        size = BAND * width * 4
        return all(ink(data[band * size:(band + 1) * size]) >= LEAST_INK for band in range(height // BAND))


def ink(pixels):
    """How many of the pixels, four bytes each, are not of the most frequent colour."""
    sample = Counter(pixels[i:i + 4] for i in range(0, len(pixels) - 3, 4 * 17))
    background = sample.most_common(1)[0][0]
    return len(pixels) // 4 - pixels.count(background)
