"""A separate desktop for one test process: X server, compositor, window manager, session bus, accessibility bus and
homes for the programs. Nothing of the person's own desktop is seen or touched, and nothing is left running or lying about.
"""
import os
import shutil
import subprocess
import sys
import tempfile

import environment
from accessibility import Bus
from processes import Process
from screen import Screen
from waiting import wait_for

HERE = os.path.dirname(os.path.abspath(__file__))
FONTS = os.path.join(os.path.dirname(os.path.dirname(HERE)), 'packaging', 'fonts.conf')
# Nothing is started on demand: no keyring, no portal, nothing that differs between machines; only what a test puts into
# the folder of services.
BUS_CONFIGURATION = '''<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir={folder}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{folder}/services</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
'''
ACCESSIBILITY_BUS = '/usr/libexec/at-spi-bus-launcher'


class Desktop:
    """Use with "with". `scheme` is what the settings portal says: None for no portal, 1 for dark, 2 for light."""

    def __init__(self, size=(1280, 1024), compositor=True, scheme=None, ground='#d3dae1'):
        self._size = size
        self._compositor = compositor
        self._scheme = scheme
        self._ground = ground
        self._processes = []
        self._homes = 0
        self._portal = None
        self._accessibility = None
        self.folder = None
        self.screen = None
        self.environment = {}

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix='plovendix-desktop-')
        try:
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_reason):
        self.close()

    def _start(self):
        runtime = os.path.join(self.folder, 'runtime')
        os.mkdir(runtime, 0o700)
        self.environment = {**environment.inherited(), **environment.own_folders(self.folder)}
        self.environment.update(XDG_RUNTIME_DIR=runtime, LANG='C', XDG_SESSION_TYPE='x11', FONTCONFIG_FILE=FONTS,
                                HOME=self.folder)
        self._start_server()
        self._start_bus()
        camera = self.start([sys.executable, '-B', os.path.join(HERE, 'camera.py')], 'camera', stdin=subprocess.PIPE,
                            stdout=subprocess.PIPE)
        self.screen = Screen(self.environment, camera)
        if self._compositor:
            self.start(['xcompmgr'], 'xcompmgr')
            wait_for(lambda: self._runs_client('xcompmgr'), 'the compositor runs')
        self.start(['openbox', '--sm-disable'], 'openbox')
        wait_for(lambda: 'window id' in self._ask('xprop', '-root', '_NET_SUPPORTING_WM_CHECK'), 'openbox runs')
        if self._scheme is not None:
            self._portal = self.start([sys.executable, '-B', os.path.join(HERE, 'portal.py'), str(self._scheme)], 'portal',
                                      stdin=subprocess.PIPE)
            self._portal.wait_for_line('ready')

    def _start_server(self):
        reading, writing = os.pipe()
        self.start(['Xvfb', '-displayfd', str(writing), '-screen', '0', '{}x{}x24'.format(*self._size), '-dpi', '96',
                    '-nolisten', 'tcp', '-noreset'], 'Xvfb', pass_fds=(writing,))
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError('Xvfb did not start: ' + self._processes[-1].complaints())
        self.environment['DISPLAY'] = f':{number}'
        self._ask('hsetroot', '-solid', self._ground)

    def _start_bus(self):
        os.mkdir(os.path.join(self.folder, 'services'))
        with open(os.path.join(self.folder, 'bus.conf'), 'w', encoding='utf-8') as file:
            file.write(BUS_CONFIGURATION.format(folder=self.folder))
        bus = self.start(['dbus-daemon', f'--config-file={self.folder}/bus.conf', '--nofork', '--print-address'], 'bus')
        address = wait_for(bus.lines, 'the session bus runs')[0]
        self.environment['DBUS_SESSION_BUS_ADDRESS'] = address
        self.environment['QT_LINUX_ACCESSIBILITY_ALWAYS_ON'] = '1'
        self.start([ACCESSIBILITY_BUS], 'accessibility')
        self._accessibility = Bus(address)

    def close(self):
        if self._accessibility:
            self._accessibility.close()
        # The last started goes first: programs before the buses and the server they talk to.
        while self._processes:
            self._processes.pop().stop()
        shutil.rmtree(self.folder, ignore_errors=True)

    def start(self, arguments, name, **options):
        variables = options.pop('environment', self.environment)
        self._processes.append(Process(arguments, variables, self.folder, name, **options))
        return self._processes[-1]

    def _ask(self, *words):
        return subprocess.run(words, env=self.environment, capture_output=True, text=True, check=False).stdout

    def _runs_client(self, name):
        return name in self._ask('xwininfo', '-root', '-children')

    def new_home(self):
        """The environment of a person who never used the program: every folder is empty and theirs alone."""
        self._homes += 1
        home = os.path.join(self.folder, f'home{self._homes}')
        folders = {'HOME': home}
        for variable, folder in (('XDG_CONFIG_HOME', '.config'), ('XDG_DATA_HOME', '.local/share'),
                                 ('XDG_CACHE_HOME', '.cache'), ('XDG_STATE_HOME', '.local/state')):
            folders[variable] = os.path.join(home, folder)
            os.makedirs(folders[variable])
        for folder in ('Videos', 'Documents'):
            os.makedirs(os.path.join(home, folder))
        return {**self.environment, **folders}

    def choose_scheme(self, scheme):
        """Changes what the settings portal says while programs run."""
        told = len(self._portal.lines())
        self._portal.stdin.write(f'{scheme}\n'.encode())
        self._portal.stdin.flush()
        wait_for(lambda: len(self._portal.lines()) > told, 'the portal tells of the change')

    def drag_source(self, mime_type, data, x=20, y=20):
        """Another program's window that offers a drag; its process, and the point to take hold of."""
        source = self.start([sys.executable, '-B', os.path.join(HERE, 'drag_source.py'), mime_type, data, str(x), str(y)],
                            'drag_source')
        source.wait_for_line('ready')
        left, top, width, height = self.screen.geometry(self.screen.window('^Drag source$'))
        return source, (left + width // 2, top + height // 2)

    def carry(self, source, grip, point):
        """Takes hold of what a drag source offers and carries it to a point; the button stays down."""
        begun = source.lines().count('begin')
        self.screen.button_down(*grip)
        self.screen.hover((grip[0] + 20, grip[1]), lambda: source.lines().count('begin') > begun, 'the drag begins')
        self.screen.glide(grip, point)

    def accessible(self, process):
        """A program's tree as assistive tools read it."""
        return self._accessibility.application(process)
