"""Another program that files and text are dragged between: a window that offers files to a drag, and below it a field
that takes text and files.

    /usr/bin/python3 drag_source.py [--move | --silent] WIDTHxHEIGHT+X+Y FILE...

With --move it offers nothing but moving; with --silent it never gives its data. On X it gives nothing to who asks
without a time. Prints a line for the end of each drag
("dragged: copy") and for each text, or list of files, that arrives
("received: ...", for files after "offered: ...").
"""

import re
import signal
import sys
from pathlib import Path

import gi
gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def say(text):
    print(text, flush=True)


def main():
    option = sys.argv.pop(1) if sys.argv[1].startswith("--") else ""
    width, height, x, y = (int(number) for number in re.findall(r"\d+", sys.argv[1]))
    uris = [Path(name).as_uri() for name in sys.argv[2:]]

    is_x11 = "X11" in type(Gdk.Display.get_default()).__name__

    def give(_widget, _context, data, _info, time):
        # As in Qt's programs, only the time tells which drag is meant.
        if is_x11 and not time:
            say("asked without a time")
            return
        if option == "--silent":
            say("asked")
            signal.pause()
        data.set_uris(uris)

    def received(_widget, context, _x, _y, data, _info, _time):
        if data.get_uris():
            say(f"offered: {' '.join(sorted(context.get_actions().value_nicks))}")
        say(f"received: {data.get_uris() or data.get_text()!r}")
    window = Gtk.Window(title="Files", decorated=False)
    window.set_default_size(width, height)
    window.move(x, y)
    box = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
    files = Gtk.EventBox()
    files.add(Gtk.Label(label="\n".join(Path(name).name for name in sys.argv[2:])))
    offered = Gdk.DragAction.MOVE if option == "--move" else Gdk.DragAction.COPY | Gdk.DragAction.MOVE
    files.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [], offered)
    files.drag_source_add_uri_targets()
    files.connect("drag-data-get", give)
    files.connect("drag-end", lambda _w, context: say(
        f"dragged: {context.get_selected_action().first_value_nick or 'nothing'}"))
    texts = Gtk.EventBox()
    texts.add(Gtk.Label(label="(drop text here)"))
    texts.drag_dest_set(Gtk.DestDefaults.ALL, [], Gdk.DragAction.COPY | Gdk.DragAction.MOVE)
    texts.drag_dest_add_uri_targets()
    texts.drag_dest_add_text_targets()
    texts.connect("drag-data-received", received)
    box.pack_start(files, True, True, 0)
    box.pack_start(texts, True, True, 0)
    window.add(box)
    window.show_all()
    Gtk.main()


main()
