"""A small window that does a little of everything, so that the harness can be tested without the program."""
import gi

gi.require_version('Gdk', '3.0')
gi.require_version('Gtk', '3.0')
from gi.repository import Gdk, Gtk  # noqa: E402


def say(word):
    print(word, flush=True)


class StandIn:
    def __init__(self):
        self.window = Gtk.Window(title='Stand-in')
        self.window.set_default_size(300, 200)
        self.window.move(400, 300)
        box = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
        field = Gtk.Entry()
        field.get_accessible().set_name('Search')
        field.connect('activate', lambda entry: say('typed ' + entry.get_text()))
        button = Gtk.Button(label='Press me')
        button.connect('clicked', lambda _: say('pressed'))
        area = Gtk.EventBox()
        area.set_size_request(280, 100)
        area.override_background_color(Gtk.StateFlags.NORMAL, Gdk.RGBA(1.0, 0.0, 0.0, 1.0))
        area.drag_dest_set(Gtk.DestDefaults.ALL, [Gtk.TargetEntry.new('text/uri-list', 0, 0)], Gdk.DragAction.COPY)
        area.connect('drag-data-received', lambda *words: say('dropped ' + words[4].get_data().decode().strip()))
        for widget in (field, button, area):
            box.add(widget)
        self.window.add(box)
        self.window.connect('key-press-event', self._key)
        self.window.connect('destroy', Gtk.main_quit)
        self.window.show_all()

    def _key(self, _window, event):
        if event.keyval == Gdk.KEY_q and event.state & Gdk.ModifierType.CONTROL_MASK:
            self.window.destroy()


if __name__ == '__main__':
    stand_in = StandIn()
    Gtk.main()
