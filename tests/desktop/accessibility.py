"""The programs as assistive tools read them: accessibles by role and name, asked over the accessibility bus.

Spoken directly rather than through the usual client library, which remembers answers and waits for programs that ended.
"""
import environment  # noqa: F401  before the libraries that read the variables
from gi.repository import Gio, GLib

from waiting import wait_for

REGISTRY = ('org.a11y.atspi.Registry', '/org/a11y/atspi/accessible/root')
ACCESSIBLE = 'org.a11y.atspi.Accessible'
PROPERTIES = 'org.freedesktop.DBus.Properties'
ANSWER_MILLISECONDS = 5000
# Trees deeper or wider than any window here are read no further.
MAX_DEPTH = 24
MAX_CHILDREN = 200
# Bits of the protocol's state set.
STATES = {'active': 1, 'busy': 3, 'checked': 4, 'editable': 7, 'enabled': 8, 'expanded': 10, 'focusable': 11,
          'focused': 12, 'modal': 16, 'selectable': 22, 'selected': 23, 'sensitive': 24, 'showing': 25, 'visible': 30}
SCREEN_COORDINATES = 0
LABELLED_BY = 2


class Gone(Exception):
    """The program ended or took the node away before it answered."""


class Bus:
    """A connection to the accessibility bus of a session."""

    def __init__(self, session_address):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._session = Gio.DBusConnection.new_for_address_sync(session_address, flags, None, None)
        wait_for(self._is_there, 'the accessibility bus runs')
        # Programs expose their trees only when somebody listens.
        for name in ('IsEnabled', 'ScreenReaderEnabled'):
            arguments = GLib.Variant('(ssv)', ('org.a11y.Status', name, GLib.Variant('b', True)))
            self._send(self._session, ('org.a11y.Bus', '/org/a11y/bus'), PROPERTIES, 'Set', arguments)
        address, = self._send(self._session, ('org.a11y.Bus', '/org/a11y/bus'), 'org.a11y.Bus', 'GetAddress', None)
        self._bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def _is_there(self):
        return self._send(self._session, ('org.freedesktop.DBus', '/'), 'org.freedesktop.DBus', 'NameHasOwner',
                          GLib.Variant('(s)', ('org.a11y.Bus',)))[0]

    def close(self):
        for connection in (self._bus, self._session):
            if not connection.is_closed():
                connection.close_sync(None)

    def call(self, node, interface, method, signature='()', *arguments):
        return self._send(self._bus, node, interface, method, GLib.Variant(signature, arguments))

    def property(self, node, interface, name):
        value, = self.call(node, PROPERTIES, 'Get', '(ss)', interface, name)
        return value

    def process_of(self, owner):
        number, = self.call(('org.freedesktop.DBus', '/'), 'org.freedesktop.DBus', 'GetConnectionUnixProcessID', '(s)', owner)
        return number

    @staticmethod
    def _send(connection, node, interface, method, arguments):
        try:
            return connection.call_sync(node[0], node[1], interface, method, arguments, None,
                                        Gio.DBusCallFlags.NONE, ANSWER_MILLISECONDS, None).unpack()
        except GLib.Error as error:
            raise Gone(f'{interface}.{method}: {error.message}') from error

    def application(self, process):
        """The tree of a program."""
        def found():
            try:
                for node in self.call(REGISTRY, ACCESSIBLE, 'GetChildren')[0]:
                    if self._is_of(node, process):
                        return Accessible(self, node)
            except Gone:
                pass
            return None
        return wait_for(found, lambda: f'{process.name} is on the accessibility bus; it runs: {process.runs()}, and says '
                                       f'{process.complaints()}')

    def _is_of(self, node, process):
        try:
            return self.process_of(node[0]) == process.pid
        except Gone:
            return False


class Accessible:
    """One node of a program's tree. Nothing is remembered: every question goes to the program."""

    def __init__(self, bus, node):
        self._bus = bus
        self._node = node

    def __eq__(self, other):
        return isinstance(other, Accessible) and self._node == other._node

    def __hash__(self):
        return hash(self._node)

    @property
    def name(self):
        return self._bus.property(self._node, ACCESSIBLE, 'Name')

    @property
    def role(self):
        return self._bus.call(self._node, ACCESSIBLE, 'GetRoleName')[0]

    @property
    def labels(self):
        """The names of the labels that stand for it."""
        relations = self._bus.call(self._node, ACCESSIBLE, 'GetRelationSet')[0]
        return [Accessible(self._bus, node).name for kind, nodes in relations if kind == LABELLED_BY for node in nodes]

    def has(self, state):
        """Whether a state holds, by its name in STATES; it does not when the node is gone."""
        try:
            words = self._bus.call(self._node, ACCESSIBLE, 'GetState')[0]
        except Gone:
            return False
        bits = sum(word << 32 * index for index, word in enumerate(words))
        return bool(bits >> STATES[state] & 1)

    def is_shown(self):
        return self.has('showing') and self.has('visible')

    @property
    def text(self):
        return self._bus.call(self._node, 'org.a11y.atspi.Text', 'GetText', '(ii)', 0, -1)[0]

    @property
    def extents(self):
        """x, y, width and height on the screen."""
        return self._bus.call(self._node, 'org.a11y.atspi.Component', 'GetExtents', '(u)', SCREEN_COORDINATES)[0]

    @property
    def centre(self):
        x, y, width, height = self.extents
        return x + width // 2, y + height // 2

    def do(self, action=0):
        """Performs an action as an assistive tool does."""
        self._bus.call(self._node, 'org.a11y.atspi.Action', 'DoAction', '(i)', action)

    def children(self):
        nodes = self._bus.call(self._node, ACCESSIBLE, 'GetChildren')[0]
        return [Accessible(self._bus, node) for node in nodes[:MAX_CHILDREN]]

    def descendants(self, shown=True, depth=MAX_DEPTH):
        """Everything below, what is not shown only when it is asked for. The items of a closed pop-up are left out:
        there are hundreds."""
        try:
            children = self.children() if depth > 0 and self.role != 'combo box' else []
        except Gone:
            return
        for child in children:
            if shown and not child.is_shown():
                continue
            yield child
            yield from child.descendants(shown, depth - 1)

    def find_all(self, role=None, name=None, shown=True):
        """All below this node of that role and name; a name may be a function that judges it."""
        return [node for node in self.descendants(shown) if node.matches(role, name)]

    def matches(self, role, name):
        try:
            if role is not None and self.role != role:
                return False
            return bool(name(self.name)) if callable(name) else name in (None, self.name)
        except Gone:
            return False

    def find(self, role=None, name=None, shown=True):
        """The first match, waited for."""
        wanted = name if isinstance(name, str) or name is None else 'that fits'
        return wait_for(lambda: self.find_all(role, name, shown),
                        lambda: f'{role} "{wanted}" appears; there is\n{self.dump()}')[0]

    def dump(self, depth=0):
        """What is shown below as text, for failures."""
        lines = []
        try:
            for child in self.children():
                if child.is_shown():
                    lines.append(f'{"  " * depth}{child.role} "{child.name}"')
                    below = child.dump(depth + 1) if depth < MAX_DEPTH and child.role != 'combo box' else ''
                    lines += [below] if below else []
        except Gone as gone:
            lines.append(f'{"  " * depth}({gone})')
        return '\n'.join(lines)
