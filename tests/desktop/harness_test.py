"""What a program under test sees of the machine and of the person who runs the test."""
import os
import subprocess
import sys
import unittest

from desktop import HERE, Desktop


class EnvironmentTest(unittest.TestCase):
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


if __name__ == '__main__':
    unittest.main(verbosity=2)
