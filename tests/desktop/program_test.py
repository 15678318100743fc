"""What the tests of the program share: one desktop for a test class, a fresh home and a running program for each test."""
import glob
import os
import re
import shutil
import unittest

from desktop import Desktop
from waiting import wait_for

BUILD = os.environ.get('PLOVENDIX_BUILD', '')
LOOKS_AT_REST = 5
SCRIPTED, REAL = 'plovendix-scripted', 'plovendix'


class ProgramTest(unittest.TestCase):
    """`self.launch()` starts the program; the rest asks it and acts on it as a person does."""

    compositor = True
    scheme = None
    scale = 1
    options = {}  # of the desktop

    @classmethod
    def setUpClass(cls):
        if not BUILD:
            raise RuntimeError('PLOVENDIX_BUILD must name the build folder')
        cls.desktop = cls.enterClassContext(Desktop(compositor=cls.compositor, scheme=cls.scheme, **cls.options))
        cls.screen = cls.desktop.screen

    def setUp(self):
        self.home = self.desktop.new_home()
        self.videos = os.path.join(self.home['HOME'], 'Videos')
        self.script = os.path.join(self.home['HOME'], 'script')
        self.home['PLOVENDIX_SCRIPT_FOLDER'] = self.script
        self.settings = os.path.join(self.home['XDG_CONFIG_HOME'], 'Quorvane', 'Plovendix.conf')
        self.program = self.tree = self.window = None

    def tearDown(self):
        failed = self._outcome.result.failures + self._outcome.result.errors
        if any(test.id() == self.id() for test, _ in failed) and self.program:
            self._keep_evidence()
        if self.program:
            self.program.stop()

    def _keep_evidence(self):
        folder = os.path.join(BUILD, 'desktop-failures')
        os.makedirs(folder, exist_ok=True)
        self.screen.picture().save(os.path.join(folder, f'{self.id()}.png'))
        print(f'{self.id()}: printed {self.program.lines()}, complained {self.program.complaints()!r}')

    # Starting

    def video(self, name):
        """A file in the Videos folder, by its path."""
        path = os.path.join(self.videos, name)
        with open(path, 'wb') as file:
            file.write(b'video')
        return path

    def sample(self):
        """A copy of the sample video in the Videos folder, by its path."""
        source, = glob.glob(os.path.join(BUILD, 'resources', 'sample', '*.mkv'))
        return shutil.copy(source, self.videos)

    def set(self, **settings):
        """Adds to the settings file, as another program would."""
        os.makedirs(os.path.dirname(self.settings), exist_ok=True)
        known = os.path.exists(self.settings)
        with open(self.settings, 'a', encoding='utf-8') as file:
            file.write(('' if known else '[General]\n') + ''.join(f'{key}={value}\n' for key, value in settings.items()))

    def launch(self, *arguments, program=SCRIPTED, **options):
        environment = {**self.home, **options.pop('environment', {})}
        self.program = self.desktop.start([os.path.join(BUILD, program), *arguments], 'program',
                                          environment=environment, **options)
        self.window = self.screen.window('^Plovendix')
        self.tree = self.desktop.accessible(self.program)
        wait_for(lambda: self.screen.active_window() == self.window, 'the window is active')

    # Looking

    def wait_for_title(self, title):
        wait_for(lambda: self.screen.title(self.window) == title,
                 lambda: f'the title is "{title}", not "{self.screen.title(self.window)}"')

    def wait_for_results(self, count):
        self.wait_for_title(f'Plovendix ({count} subtitles found)')
        self.tree.find('list', 'Results')

    def rows(self):
        return self.tree.find_all('list item')

    def row(self, number):
        """The row of that number, counted from 1."""
        return self.tree.find('list item', lambda name: name.startswith(f'Result.{number}.'))

    def field(self):
        return self.tree.find('text', 'Search')

    def wait_for_focus(self, accessible):
        wait_for(lambda: accessible.has('focused'), 'it has the focus')

    def wait_for_no(self, role, name=None):
        wait_for(lambda: not self.tree.find_all(role, name), lambda: f'no {role} "{name}" is shown\n{self.tree.dump()}')

    def wait_for_folder(self, *names):
        """The files of the Videos folder."""
        wait_for(lambda: sorted(os.listdir(self.videos)) == sorted(names),
                 lambda: f'{self.videos} holds {sorted(names)}, not {sorted(os.listdir(self.videos))}')

    def margin(self):
        """The shadow around the frame in pixels: left, right, top, bottom."""
        text = self.screen.properties(self.window, '_GTK_FRAME_EXTENTS').get('_GTK_FRAME_EXTENTS', '0, 0, 0, 0')
        return tuple(int(number) for number in re.findall(r'\d+', text))

    def frame(self):
        """x, y, width and height of the window without its shadow."""
        x, y, width, height = self.screen.geometry(self.window)
        left, right, top, bottom = self.margin()
        return x + left, y + top, width - left - right, height - top - bottom

    # Acting

    def search(self, text):
        """Types into the search field, which has the focus, and presses Return."""
        self.wait_for_focus(self.field())
        self.screen.press('ctrl+a')
        self.screen.type(text)
        self.screen.press('Return')

    def click(self, accessible, times=1):
        """Clicks in the middle, once it has come to rest: panels slide."""
        seen = []

        def rests():
            seen.append(accessible.extents)
            return len(seen) >= LOOKS_AT_REST and len(set(seen[-LOOKS_AT_REST:])) == 1
        wait_for(rests, 'it stays where it is')
        # Accessibles speak of points, the mouse of pixels.
        self.screen.click(*(self.scale * coordinate for coordinate in accessible.centre), times=times)

    def select(self, number):
        """Clicks a row and waits for the panel that shows it."""
        self.click(self.row(number))
        wait_for(lambda: self.row(number).has('selected'), f'row {number} is selected')
        self.tree.find('push button', 'Download')

    def select_first(self):
        wait_for(self.rows, lambda: f'results are shown\n{self.tree.dump()}')
        self.click(self.rows()[0])
        self.tree.find('push button', 'Download')

    def open_menu(self):
        """Opens the main menu, which the toolkit does not show to assistive tools."""
        shown = len(self.screen.windows_of(self.program.pid))
        self.click(self.tree.find('button menu', 'Main menu'))
        wait_for(lambda: len(self.screen.windows_of(self.program.pid)) > shown, 'the menu is shown')

    def choose(self, *keys):
        """Chooses an entry of the main menu by the keys that lead to it."""
        self.open_menu()
        self.screen.press(*keys, 'Return')

    def open_preferences(self, tab='General'):
        self.screen.press('ctrl+comma')
        pane = self.tree.find('frame', 'General')
        if tab != 'General':
            self.click(pane.find('check box', tab))
        return self.tree.find('frame', tab)

    def suggested_name(self):
        """The save sheet's name field, once it is shown."""
        return self.tree.find('dialog', 'Save').find('text', 'File name:')
