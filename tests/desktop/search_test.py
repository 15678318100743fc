"""Searching: typed, failed, and from the command line."""
import os
import unittest

from program_test import BUILD, REAL, ProgramTest
from waiting import wait_for


class TypedSearchTest(ProgramTest):
    def test_return_in_the_field_searches_and_lists_what_was_found(self):
        self.launch()
        self.search('harbour')
        self.wait_for_results(3)
        self.assertEqual([row.name for row in self.rows()],
                         [f'Result.{number}.harbour, Scripted film' for number in (1, 2, 3)])


class FailedSearchTest(ProgramTest):
    def test_an_error_is_an_alert_that_return_dismisses(self):
        self.launch()
        self.search('refuse')
        alert = self.tree.find('alert message')
        alert.find('label', 'The scripted service refuses.')
        self.wait_for_focus(alert.find('push button', 'OK'))
        self.assertIn('Error: The scripted service refuses.', self.program.lines())
        self.screen.press('Return')
        self.wait_for_no('alert message')
        self.wait_for_no(None, 'Searching')
        self.search('harbour')
        self.wait_for_results(3)


class CommandLineTest(ProgramTest):
    def test_a_file_is_searched_for_like_a_drop(self):
        self.launch(self.video('Harbour.Lights.mkv'))
        self.wait_for_results(3)
        self.assertEqual(self.field().text, 'Harbour.Lights.mkv')
        self.assertEqual(self.row(2).name, 'Result.2.Harbour.Lights, Scripted film')

    def test_a_relative_path_counts_from_where_the_program_was_started(self):
        self.video('Harbour.Lights.mkv')
        self.launch('Harbour.Lights.mkv', cwd=self.videos)
        self.wait_for_results(3)

    def test_the_sample_is_found_in_the_catalogue(self):
        folder = os.path.join(BUILD, 'resources', 'sample')
        sample, = (name for name in os.listdir(folder) if name.endswith('.mkv'))
        self.launch(os.path.join(folder, sample), program=REAL)
        wait_for(lambda: len(self.rows()) > 1, 'the catalogue has several subtitles')
        self.assertIn('matches this file', self.rows()[0].name)


if __name__ == '__main__':
    unittest.main(verbosity=2)
