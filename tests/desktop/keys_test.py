"""The keyboard's ways through the window, and closing it at any moment."""
import os
import unittest

from program_test import ProgramTest
from waiting import wait_for


class ShortcutTest(ProgramTest):
    def test_ctrl_o_opens_a_video(self):
        path = self.video('Harbour.mkv')
        self.launch()
        self.screen.press('ctrl+o')
        dialog = self.tree.find('dialog', 'Open Video')
        name = dialog.find('text', 'File name:')
        self.wait_for_focus(name)
        self.screen.type(path)
        wait_for(lambda: name.text == path, lambda: f'the path is typed, not {name.text}')
        self.screen.press('Return')
        self.wait_for_results(3)
        self.assertEqual(self.field().text, 'Harbour.mkv')


class QuitTest(ProgramTest):
    def assert_ends(self):
        self.assertEqual(self.program.wait_for_exit(), 0)
        self.assertNotIn('fault', self.program.complaints().lower())

    def close_by_window_manager(self):
        self.screen.close_window(self.window)

    def open_beside(self, open_it, title):
        """Opens another window, which is in front then."""
        self.launch()
        open_it()
        window = self.screen.window(title)
        wait_for(lambda: self.screen.active_window() == window, f'{title} is in front')

    def test_ctrl_q_ends_from_every_window(self):
        for title, open_it in (('^General$', lambda: self.screen.press('ctrl+comma')),
                               ('^About Plovendix$', lambda: self.choose('Up', 'Up'))):
            with self.subTest(window=title):
                self.open_beside(open_it, title)
                self.screen.press('ctrl+q')
                self.assert_ends()

    def test_ctrl_w_closes_the_window_in_front_alone(self):
        self.open_beside(lambda: self.screen.press('ctrl+comma'), '^General$')
        self.screen.press('ctrl+w')
        wait_for(lambda: self.screen.active_window() == self.window, 'the main window is in front again')
        self.screen.press('ctrl+w')
        self.assert_ends()

    def test_closing_while_a_search_runs(self):
        self.launch()
        self.search('never')
        self.tree.find(name='Searching')
        self.close_by_window_manager()
        self.assert_ends()

    def test_closing_while_the_save_sheet_is_open(self):
        self.launch(self.video('Harbour.mkv'))
        self.wait_for_results(3)
        self.select(1)
        self.screen.press('ctrl+s')
        self.tree.find('dialog', 'Save')
        self.close_by_window_manager()
        self.assert_ends_or_asks_first()
        self.assertEqual(os.listdir(self.videos), ['Harbour.mkv'])

    def test_closing_while_an_alert_is_up(self):
        self.launch()
        self.search('refuse')
        self.tree.find('alert message')
        self.close_by_window_manager()
        self.assert_ends_or_asks_first()

    def assert_ends_or_asks_first(self):
        """A window that is blocked by a sheet or an alert may stay until that is answered; then it closes."""
        modal = ('dialog', 'alert message')
        wait_for(lambda: not self.program.runs() or any(self.tree.find_all(role) for role in modal), 'it ends or asks')
        if self.program.runs():
            self.screen.press('Escape')
            wait_for(lambda: not any(self.tree.find_all(role) for role in modal), 'the modal is gone')
            self.close_by_window_manager()
        self.assert_ends()


if __name__ == '__main__':
    unittest.main(verbosity=2)
