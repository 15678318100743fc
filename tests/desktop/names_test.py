"""What assistive tools read: every control has a name, and the names are the agreed ones."""
import unittest

from program_test import ProgramTest

CONTROLS = ('push button', 'text', 'combo box', 'button menu', 'list', 'check box', 'radio button', 'toggle button')


class NamesTest(ProgramTest):
    def assert_every_control_is_named(self):
        nameless = [node.role for node in self.tree.descendants() if node.role in CONTROLS and not node.name.strip()]
        self.assertEqual(nameless, [])

    def test_the_idle_window(self):
        self.launch()
        self.assertEqual(self.tree.find('frame', 'Plovendix').name, 'Plovendix')
        for role, name in (('text', 'Search'), ('push button', 'Start search'), ('combo box', 'English'),
                           ('button menu', 'Main menu'), ('push button', 'Minimize'), ('push button', 'Maximize'),
                           ('push button', 'Close'), ('label', 'Drop a video here')):
            with self.subTest(name=name):
                self.tree.find(role, name)
        # On this platform a pop-up's name is its value; what it is for is said by its label.
        self.assertEqual(self.tree.find('combo box', 'English').labels, ['Subtitle language'])
        self.assert_every_control_is_named()

    def test_the_window_with_results(self):
        self.launch()
        self.search('harbour')
        self.wait_for_results(3)
        self.select(1)
        self.tree.find('frame', 'Plovendix (3 subtitles found)')
        for role, name in (('list', 'Results'), ('list item', 'Result.2.harbour, Scripted film'),
                           ('push button', 'Cancel search'), ('push button', 'Download'), ('label', 'English')):
            with self.subTest(name=name):
                self.tree.find(role, name)
        self.assert_every_control_is_named()

    def test_the_alert_is_one(self):
        self.launch()
        self.search('refuse')
        alert = self.tree.find('alert message')
        alert.find('label', 'The scripted service refuses.')
        window, = (window for window in self.screen.windows_of(self.program.pid) if window != self.window)
        self.assertIn('_NET_WM_STATE_MODAL', self.screen.states(window))

    def test_the_menu_is_worked_by_the_keyboard(self):
        self.launch()
        self.choose('Down')
        self.tree.find('dialog', 'Open Video')
        self.screen.press('Escape')
        self.wait_for_no('dialog')


if __name__ == '__main__':
    unittest.main(verbosity=2)
