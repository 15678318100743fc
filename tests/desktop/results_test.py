"""The results: moving in the list, the panel, and what a download does with one."""
import os
import unittest

from program_test import ProgramTest
from waiting import wait_for


class ListTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.launch()
        self.search('harbour')
        self.wait_for_results(3)

    def wait_for_panel(self, number):
        self.tree.find('label', f'Result.{number}.harbour')
        wait_for(lambda: self.row(number).has('selected'), f'row {number} is selected')

    def test_the_list_is_reached_by_the_keyboard_alone(self):
        results = self.tree.find('list', 'Results')
        for _ in range(12):
            if results.has('focused') or any(row.has('focused') for row in self.rows()):
                break
            self.screen.press('Tab')
        self.screen.press('Down')
        self.wait_for_panel(1)


class DownloadTest(ProgramTest):
    VIDEO, SUGGESTED = 'Movie.one.mkv', 'Movie.one.eng.srt'

    def setUp(self):
        super().setUp()
        self.launch(self.video(self.VIDEO))
        self.wait_for_results(3)

    def wait_for_sheet(self):
        field = self.suggested_name()
        wait_for(lambda: field.text == self.SUGGESTED, lambda: f'the sheet suggests {self.SUGGESTED}, not {field.text}')
        self.wait_for_focus(field)

    def wait_for_saved(self):
        self.wait_for_folder(self.VIDEO, self.SUGGESTED)
        self.wait_for_no('dialog')
        self.tree.find('label', f'Saved as {self.SUGGESTED}')

    def test_double_click_opens_the_sheet_and_return_saves_beside_the_video(self):
        self.click(self.row(2), times=2)
        self.wait_for_sheet()
        self.screen.press('Return')
        self.wait_for_saved()
        self.tree.find('push button', 'Show in folder')
        with open(os.path.join(self.videos, self.SUGGESTED), encoding='utf-8') as file:
            self.assertIn('Scripted', file.read())

    def test_return_in_the_list_downloads_with_and_without_alt(self):
        self.select(1)
        for keys in ('Return', 'alt+Return', 'alt+shift+Return', 'ctrl+s', 'ctrl+shift+s'):
            with self.subTest(keys=keys):
                self.screen.press(keys)
                self.wait_for_sheet()
                self.screen.press('Escape')
                self.wait_for_no('dialog')
        self.wait_for_folder(self.VIDEO)

    def test_cancelling_the_sheet_saves_nothing_and_keeps_the_results(self):
        self.select(1)
        self.screen.press('ctrl+s')
        self.wait_for_sheet()
        self.click(self.tree.find('dialog', 'Save').find('push button', 'Cancel'))
        self.wait_for_no('dialog')
        self.wait_for_folder(self.VIDEO)
        self.assertEqual(len(self.rows()), 3)

    def test_a_file_of_that_name_is_not_overwritten(self):
        existing = self.video(self.SUGGESTED)
        self.select(1)
        self.screen.press('ctrl+s')
        self.wait_for_sheet()
        self.screen.press('Return')
        alert = self.tree.find('alert message')
        alert.find('label', lambda text: self.SUGGESTED in text)
        with open(existing, encoding='utf-8') as file:
            self.assertEqual(file.read(), 'video')
        self.screen.press('Return')
        self.wait_for_no('alert message')


if __name__ == '__main__':
    unittest.main(verbosity=2)
