"""Another program that files and text are dragged between: a window that offers files to a drag, and below it a field
that takes text.

    /usr/bin/python3 drag_source.py WIDTHxHEIGHT+X+Y FILE...

Prints a line for the end of each drag ("dragged: copy") and for each text that arrives ("received: ...").
"""

import re
import sys
from pathlib import Path

import gi
gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def say(text):
    print(text, flush=True)


def main():
    width, height, x, y = (int(number) for number in re.findall(r"\d+", sys.argv[1]))
    uris = [Path(name).as_uri() for name in sys.argv[2:]]
    window = Gtk.Window(title="Files", decorated=False)
    window.set_default_size(width, height)
    window.move(x, y)
    box = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
    files = Gtk.EventBox()
    files.add(Gtk.Label(label="\n".join(Path(name).name for name in sys.argv[2:])))
    files.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [], Gdk.DragAction.COPY | Gdk.DragAction.MOVE)
    files.drag_source_add_uri_targets()
    files.connect("drag-data-get", lambda _w, _c, data, _i, _t: data.set_uris(uris))
    files.connect("drag-end", lambda _w, context: say(f"dragged: {context.get_selected_action().first_value_nick}"))
    texts = Gtk.EventBox()
    texts.add(Gtk.Label(label="(drop text here)"))
    texts.drag_dest_set(Gtk.DestDefaults.ALL, [], Gdk.DragAction.COPY | Gdk.DragAction.MOVE)
    texts.drag_dest_add_text_targets()
    texts.connect("drag-data-received", lambda _w, _c, _x, _y, data, _i, _t: say(f"received: {data.get_text()!r}"))
    box.pack_start(files, True, True, 0)
    box.pack_start(texts, True, True, 0)
    window.add(box)
    window.show_all()
    Gtk.main()


main()
