"""The project's commands: what they need, what they say, and that they leave nothing behind."""
import os
import subprocess
import tempfile
import unittest

from waiting import wait_for

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
DISPLAY_SCRIPT = os.path.join(ROOT, 'packaging', 'virtual-display.sh')
NO_DISPLAY = ':9999'


class CommandTest(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        home = self.enterContext(tempfile.TemporaryDirectory())
        self.environment = {'PATH': os.environ['PATH'], 'HOME': home, 'TMPDIR': self.folder, 'LANG': 'C'}

    def run_command(self, *words, **environment):
        return subprocess.run(words, cwd=self.folder, env={**self.environment, **environment}, capture_output=True,
                              text=True, check=False, timeout=120)


class VirtualDisplayTest(CommandTest):
    def test_a_command_sees_a_display_with_a_window_manager_and_a_session_bus(self):
        done = self.run_command(DISPLAY_SCRIPT, 'sh', '-c',
                                'xprop -root _NET_SUPPORTING_WM_CHECK && gdbus call --session --dest org.freedesktop.DBus '
                                '--object-path / --method org.freedesktop.DBus.GetId && ls -d "$XDG_RUNTIME_DIR"')
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn('window id', done.stdout)
        self.assertIn(self.folder, done.stdout)

    def test_its_status_is_the_commands_and_its_output_the_commands_alone(self):
        done = self.run_command(DISPLAY_SCRIPT, 'sh', '-c', 'echo said; echo complained >&2; exit 7')
        self.assertEqual((done.returncode, done.stdout, done.stderr), (7, 'said\n', 'complained\n'))
        self.assertEqual(os.listdir(self.folder), [])

    def test_a_persons_own_desktop_is_not_used(self):
        done = self.run_command(DISPLAY_SCRIPT, 'sh', '-c', 'echo "$DISPLAY $WAYLAND_DISPLAY."', DISPLAY=NO_DISPLAY,
                                WAYLAND_DISPLAY='wayland-0')
        self.assertRegex(done.stdout, r'^:\d+ \.$')
        self.assertNotIn(NO_DISPLAY, done.stdout)

    def test_stopped_it_stops_everything(self):
        with subprocess.Popen([DISPLAY_SCRIPT, 'sh', '-c', 'echo $DISPLAY; exec sleep 600'], cwd=self.folder,
                              env=self.environment, stdout=subprocess.PIPE, text=True) as process:
            display = process.stdout.readline().strip()
            self.assertTrue(self.answers(display))
            process.terminate()
            self.assertEqual(process.wait(60), 143)
        wait_for(lambda: not self.answers(display), 'the server is gone')
        self.assertEqual(os.listdir(self.folder), [])

    def answers(self, display):
        return self.run_command('xdpyinfo', DISPLAY=display).returncode == 0


class HasDisplayTest(CommandTest):
    def has_display(self, *prefix, **environment):
        script = f'. {ROOT}/packaging/commands.sh; has_display'
        return self.run_command(*prefix, 'bash', '-c', script, **environment).returncode == 0

    def test_a_display_counts_only_when_it_answers(self):
        self.assertFalse(self.has_display())
        self.assertFalse(self.has_display(DISPLAY=NO_DISPLAY))
        self.assertFalse(self.has_display(WAYLAND_DISPLAY='wayland-0', XDG_RUNTIME_DIR=self.folder))
        self.assertTrue(self.has_display(DISPLAY_SCRIPT))


class PackagesTest(CommandTest):
    SCRIPT = os.path.join(ROOT, 'packaging', 'install-packages.sh')

    def test_an_unknown_section_is_refused(self):
        done = self.run_command(self.SCRIPT, 'nonsense')
        self.assertEqual(done.returncode, 2)
        self.assertIn('[nonsense]', done.stderr)

    def test_with_everything_there_it_does_nothing(self):
        done = self.run_command(self.SCRIPT, 'build', 'run', 'package', 'test')
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, '', ''))

    def test_every_package_is_named_once(self):
        with open(os.path.join(ROOT, 'packaging', 'debian-packages.txt'), encoding='utf-8') as file:
            names = [line.strip() for line in file if line.strip() and line[0] not in '#[']
        self.assertEqual(sorted(set(names)), sorted(names))


class RunTest(CommandTest):
    def test_a_video_that_is_not_there_is_said_before_anything_is_built(self):
        done = self.run_command(os.path.join(ROOT, 'run'), 'missing.mkv')
        self.assertEqual(done.returncode, 2)
        self.assertIn('missing.mkv', done.stderr)
        self.assertEqual(done.stdout, '')


if __name__ == '__main__':
    unittest.main(verbosity=2)
