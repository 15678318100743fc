"""The harness itself, on a small window of another toolkit: keys, mouse, drags, accessibles, pictures, window states."""
import os
import subprocess
import sys
import unittest

from desktop import HERE, Desktop
from waiting import wait_for


class HarnessTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop())

    def setUp(self):
        self.screen = self.desktop.screen
        self.program = self.desktop.start([sys.executable, '-B', os.path.join(HERE, 'stand_in.py')], 'stand_in',
                                          environment=self.desktop.new_home())
        self.addCleanup(self.program.stop)
        self.window = self.screen.window('^Stand-in$')
        self.tree = self.desktop.accessible(self.program)

    def test_keys_reach_the_focused_field(self):
        field = self.tree.find('text', 'Search')
        wait_for(lambda: field.has('focused'), 'the field has the focus')
        self.screen.type('harbour')
        wait_for(lambda: field.text == 'harbour', lambda: f'the field shows what was typed, not "{field.text}"')
        self.screen.press('Return')
        self.program.wait_for_line('typed harbour')

    def test_the_mouse_presses_what_is_found_by_name(self):
        self.screen.click(*self.tree.find('push button', 'Press me').centre)
        self.program.wait_for_line('pressed')

    def test_a_drag_from_another_program_arrives(self):
        source, grip = self.desktop.drag_source('text/uri-list', 'file:///nowhere/Film.mkv\r\n')
        self.addCleanup(source.stop)
        x, y, width, height = self.screen.geometry(self.window)
        self.desktop.carry(source, grip, (x + width // 2, y + height // 2 + 20))
        self.screen.button_up()
        self.program.wait_for_line('dropped file:///nowhere/Film.mkv')
        source.wait_for_line('taken')

    def test_a_drag_of_another_kind_is_refused(self):
        source, grip = self.desktop.drag_source('text/plain', 'words')
        self.addCleanup(source.stop)
        x, y, width, height = self.screen.geometry(self.window)
        self.desktop.carry(source, grip, (x + width // 2, y + height // 2 + 20))
        self.screen.button_up()
        source.wait_for_line('refused')
        self.assertEqual(self.program.lines(), [])

    def test_pictures_show_the_window(self):
        x, y, width, height = self.screen.geometry(self.window)
        wait_for(lambda: self.screen.colour(x + width // 2, y + height // 2 + 20) == (255, 0, 0), 'the area is red')
        path = os.path.join(self.desktop.folder, 'window.png')
        part = self.screen.picture().cut(x, y, width, height)
        part.save(path)
        self.assertEqual((part.width, part.height), (width, height))
        with open(path, 'rb') as file:
            self.assertEqual(file.read(8), b'\x89PNG\r\n\x1a\n')

    def test_window_states_are_read(self):
        self.screen.activate(self.window)
        self.screen.press('alt+F10')
        self.assertNotIn('_NET_WM_STATE_HIDDEN', self.screen.states(self.window))
        self.assertIn('Stand-in', self.screen.properties(self.window, 'WM_NAME')['WM_NAME'])

    def test_a_program_that_ends_is_noticed(self):
        self.screen.activate(self.window)
        self.screen.press('ctrl+q')
        self.assertEqual(self.program.wait_for_exit(), 0)


class EnvironmentTest(unittest.TestCase):
    """What a program under test sees of the machine and of the person who runs the test."""

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop())

    def run_program(self, *words):
        home = self.desktop.new_home()
        program = self.desktop.start(words, 'program', environment=home)
        self.addCleanup(program.stop)
        program.wait_for_exit()
        return home, program.lines()

    def test_the_persons_variables_are_not_seen(self):
        # In a separate process, because the test process no longer knows them.
        script = 'import desktop, os\nwith desktop.Desktop() as made: print(made.new_home(), dict(os.environ))'
        foreign = {'QT_SCALE_FACTOR': '2', 'BROWSER': 'foreign-browser', 'XDG_DATA_DIRS': '/foreign-data', 'LANGUAGE': 'foreign',
                   'HTTPS_PROXY': 'foreign:1', 'GTK_THEME': 'foreign', 'PLOVENDIX_SUBTITLE_API_KEY': 'foreign'}
        seen = subprocess.run([sys.executable, '-B', '-c', script], cwd=HERE, env={**os.environ, **foreign},
                              capture_output=True, text=True, check=True).stdout
        self.assertIn('DISPLAY', seen)
        self.assertNotIn('foreign', seen)
        self.assertNotIn('QT_SCALE_FACTOR', seen)

    def test_every_folder_is_the_desktops_own(self):
        _, lines = self.run_program('env')
        variables = dict(line.split('=', 1) for line in lines)
        self.assertLessEqual({'XDG_DATA_DIRS', 'XDG_CONFIG_DIRS', 'XDG_DATA_HOME', 'XDG_CONFIG_HOME', 'XDG_RUNTIME_DIR'},
                             set(variables))
        for name in [*filter(lambda name: name.startswith('XDG_') and '/' in variables[name], variables), 'HOME']:
            self.assertTrue(variables[name].startswith(self.desktop.folder), f'{name}={variables[name]}')
        self.assertNotIn('applications', os.listdir(variables['XDG_DATA_DIRS']))

    def test_nothing_that_is_installed_handles_anything(self):
        for kind in ('x-scheme-handler/https', 'x-scheme-handler/mailto', 'inode/directory', 'text/html', 'text/plain'):
            _, lines = self.run_program('gio', 'mime', kind)
            self.assertRegex(" ".join(lines), "^No default applications", kind)


class PortalTest(unittest.TestCase):
    def test_the_portal_says_what_it_is_told(self):
        with Desktop(scheme=1) as desktop:
            words = ['gdbus', 'call', '--session', '--dest', 'org.freedesktop.portal.Desktop', '--object-path',
                     '/org/freedesktop/portal/desktop', '--method', 'org.freedesktop.portal.Settings.Read',
                     'org.freedesktop.appearance', 'color-scheme']
            asked = desktop.start(words, 'asked')
            asked.wait_for_line('(<<uint32 1>>,)')
            desktop.choose_scheme(2)
            again = desktop.start(words, 'again')
            again.wait_for_line('(<<uint32 2>>,)')


if __name__ == '__main__':
    unittest.main(verbosity=2)
