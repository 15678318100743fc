"""The program as it is installed for one person: found by the desktop through its entry, its bus name and its scheme."""
import os
import shutil
import signal
import subprocess
import urllib.parse

import environment  # noqa: F401  before the libraries that read the variables
from gi.repository import Gio, GLib

from program_test import BUILD, ProgramTest
from waiting import wait_for

IDENTIFIER = 'com.quorvane.Plovendix'
PATH = '/com/quorvane/Plovendix'
# A registered handler of a companion's reply scheme: keeps what it was asked to open.
HANDLER = '''#!/bin/sh
printf '%s\\n' "$@" >> "$0.received"
'''
ENTRY = '''[Desktop Entry]
Type=Application
Name={name}
Exec={program} %u
MimeType=x-scheme-handler/{scheme};
'''


class BusProgram:
    """A program that was started by somebody else, known by its name on the bus."""

    def __init__(self, pid):
        self.pid = pid

    def runs(self):
        return os.path.exists(f'/proc/{self.pid}')

    def complaints(self):
        return ''

    def lines(self):
        return []

    def stop(self):
        try:
            os.kill(self.pid, signal.SIGTERM)
        except ProcessLookupError:
            pass


class InstalledTest(ProgramTest):
    """Installs into a new home for each test. `self.bus` is a connection to the session bus of the desktop."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        address = cls.desktop.environment['DBUS_SESSION_BUS_ADDRESS']
        cls.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        cls.addClassCleanup(cls.bus.close_sync, None)

    def setUp(self):
        super().setUp()
        self.prefix = os.path.join(self.home['HOME'], '.local')
        self.install(self.prefix)
        self.installed = os.path.join(self.prefix, 'bin', 'plovendix')
        service = os.path.join(self.prefix, 'share/dbus-1/services', f'{IDENTIFIER}.service')
        shutil.copy(service, os.path.join(self.desktop.folder, 'services'))
        self.ask_bus('ReloadConfig')
        self.ask_bus('UpdateActivationEnvironment', '(a{ss})', self.home)

    def tearDown(self):
        owner = self.owner()
        super().tearDown()
        if owner and owner.runs():
            owner.stop()
        wait_for(lambda: not self.owner(), 'the name is free again')

    def install(self, prefix):
        subprocess.run(['cmake', '--install', BUILD, '--prefix', prefix], env=self.home, check=True, capture_output=True)

    def run_tool(self, *words):
        """Runs a program of the desktop to its end; its exit status."""
        tool = self.desktop.start(words, os.path.basename(words[0]), environment=self.home)
        status = tool.wait_for_exit()
        self.assertEqual(status, 0, f'{words}: {tool.complaints()}')

    # The bus

    def ask_bus(self, method, signature='()', *arguments):
        return self.bus.call_sync('org.freedesktop.DBus', '/org/freedesktop/DBus', 'org.freedesktop.DBus', method,
                                  GLib.Variant(signature, arguments), None, Gio.DBusCallFlags.NONE, -1, None).unpack()

    def owner(self):
        """The program that owns the name, or nothing."""
        try:
            return BusProgram(self.ask_bus('GetConnectionUnixProcessID', '(s)', IDENTIFIER)[0])
        except GLib.Error:
            return None

    def open_over_bus(self, *uris):
        listed = '[' + ', '.join(f"'{uri}'" for uri in uris) + ']' if uris else '@as []'
        self.run_tool('gdbus', 'call', '--session', '--dest', IDENTIFIER, '--object-path', PATH, '--method',
                      'org.freedesktop.Application.Open', listed, '{}')

    # The program

    def launch_installed(self, *arguments):
        self.program = self.desktop.start([self.installed, *arguments], 'program', environment=self.home)
        self.adopt()

    def adopt(self):
        """Looks at the program that owns the name, no matter how it was started."""
        wait_for(self.owner, 'the program runs')
        if not self.program:
            self.program = self.owner()
        self.window = self.screen.window('^Plovendix')
        self.tree = self.desktop.accessible(self.program)

    def wait_for_field(self, text):
        wait_for(lambda: self.field().text == text, lambda: f'the field shows "{text}", not "{self.field().text}"')

    def register_handler(self, scheme, identifier):
        """Installs an application for a scheme; the file that keeps what it is asked to open."""
        program = os.path.join(self.home['HOME'], identifier)
        with open(program, 'w', encoding='utf-8') as file:
            file.write(HANDLER)
        os.chmod(program, 0o755)
        applications = os.path.join(self.home['XDG_DATA_HOME'], 'applications')
        with open(os.path.join(applications, f'{identifier}.desktop'), 'w', encoding='utf-8') as file:
            file.write(ENTRY.format(name=identifier, program=program, scheme=scheme))
        subprocess.run(['update-desktop-database', applications], check=True)
        return program + '.received'


def request(video, **items):
    """The URL by which a companion asks for a video's subtitles."""
    query = {'fileurl': 'file://' + urllib.parse.quote(video), **items}
    return 'plovendix://search?' + urllib.parse.urlencode(query, quote_via=urllib.parse.quote)


