"""A window of another toolkit that offers what is given as a drag: drag_source.py TYPE DATA X Y

TYPE is a MIME type such as text/uri-list, under which data is offered as a text too, as file managers do. Prints "ready", and for every drag "begin" and at its end "taken" or "refused".
"""
import sys

import gi

gi.require_version('Gdk', '3.0')
gi.require_version('Gtk', '3.0')
from gi.repository import Gdk, Gtk  # noqa: E402

WIDTH, HEIGHT = 160, 120


def say(word):
    print(word, flush=True)


class DragSource:
    def __init__(self, mime_type, data, x, y):
        self._data = data.encode()
        self._refused = False
        self._window = Gtk.Window(title='Drag source')
        self._window.set_default_size(WIDTH, HEIGHT)
        self._window.add(Gtk.Label(label='drag me'))
        self._window.move(x, y)
        targets = [Gtk.TargetEntry.new(name, 0, 0) for name in dict.fromkeys((mime_type, 'text/plain'))]
        self._window.add_events(Gdk.EventMask.BUTTON_PRESS_MASK)
        self._window.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, targets, Gdk.DragAction.COPY)
        self._window.connect('drag-begin', lambda *_: self._begin())
        self._window.connect('drag-data-get', self._give)
        self._window.connect('drag-failed', lambda *_: self._fail())
        self._window.connect('drag-end', lambda *_: say('refused' if self._refused else 'taken'))
        self._window.connect('map-event', lambda *_: say('ready'))
        self._window.connect('destroy', Gtk.main_quit)
        self._window.show_all()

    def _begin(self):
        self._refused = False
        say('begin')

    def _give(self, _widget, _context, selection, _info, _time):
        selection.set(selection.get_target(), 8, self._data)

    def _fail(self):
        self._refused = True
        return True  # without the picture that flies back, which only takes time


if __name__ == '__main__':
    source = DragSource(sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4]))
    Gtk.main()
