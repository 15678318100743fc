"""A settings portal for a private bus: portal.py SCHEME, with 0 for no preference, 1 for dark and 2 for light.

Another number on standard input changes the setting and tells everybody.
"""
import sys

from gi.repository import Gio, GLib

NAMESPACE, KEY = 'org.freedesktop.appearance', 'color-scheme'
INTERFACE = 'org.freedesktop.portal.Settings'
PATH = '/org/freedesktop/portal/desktop'
XML = f'''
<node><interface name="{INTERFACE}">
  <method name="ReadAll"><arg type="as" direction="in"/><arg type="a{{sa{{sv}}}}" direction="out"/></method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
  <property name="version" type="u" access="read"/>
</interface></node>'''


class Portal:
    def __init__(self, connection, scheme):
        self._connection = connection
        self._scheme = scheme
        connection.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(XML).interfaces[0], self._call, self._get, None)

    def change(self, scheme):
        self._scheme = scheme
        self._connection.emit_signal(None, PATH, INTERFACE, 'SettingChanged',
                                     GLib.Variant('(ssv)', (NAMESPACE, KEY, self._value())))

    def _value(self):
        return GLib.Variant('u', self._scheme)

    def _call(self, _connection, _sender, _path, _interface, _method, _parameters, invocation):
        invocation.return_value(GLib.Variant('(a{sa{sv}})', ({NAMESPACE: {KEY: self._value()}},)))

    def _get(self, *_arguments):
        return GLib.Variant('u', 2)


def main(scheme):
    connection = Gio.bus_get_sync(Gio.BusType.SESSION)
    portal = Portal(connection, int(scheme))
    loop = GLib.MainLoop()

    def read(channel, _condition):
        line = channel.readline()
        if not line:
            loop.quit()
            return False
        portal.change(int(line))
        print('changed', flush=True)
        return True
    GLib.io_add_watch(sys.stdin, GLib.PRIORITY_DEFAULT, GLib.IOCondition.IN | GLib.IOCondition.HUP, read)
    Gio.bus_own_name_on_connection(connection, 'org.freedesktop.portal.Desktop', Gio.BusNameOwnerFlags.NONE,
                                   lambda *_: print('ready', flush=True), lambda *_: loop.quit())
    loop.run()


if __name__ == '__main__':
    main(sys.argv[1])
