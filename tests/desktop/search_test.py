"""Searching: typed, from the command line, cancelled, failed, and found nothing."""
import os
import unittest

from program_test import BUILD, REAL, ProgramTest
from waiting import remains, wait_for

REVEAL_SECONDS = 10


class TypedSearchTest(ProgramTest):
    def test_return_in_the_field_searches_and_lists_what_was_found(self):
        self.launch()
        self.search('harbour')
        self.wait_for_results(3)
        self.assertEqual([row.name for row in self.rows()],
                         [f'Result.{number}.harbour, Scripted film' for number in (1, 2, 3)])

    def test_the_magnifier_searches_too(self):
        self.launch()
        self.wait_for_focus(self.field())
        self.screen.type('harbour 5')
        self.click(self.tree.find('push button', 'Start search'))
        self.wait_for_results(5)

    def test_an_empty_field_starts_nothing(self):
        self.launch()
        self.wait_for_focus(self.field())
        self.screen.press('Return')
        self.screen.type('later')
        self.screen.press('Return')
        self.tree.find(name='Searching')
        self.assertEqual(self.screen.title(self.window), 'Plovendix')

    def test_nothing_found_is_said_in_the_drop_area(self):
        self.launch()
        self.search('nothing')
        self.wait_for_title('Plovendix (0 subtitles found)')
        self.tree.find('label', lambda name: name.startswith('Nothing found for “nothing”'))
        self.wait_for_no('list', 'Results')

    def test_escape_after_a_search_clears_it(self):
        self.launch()
        self.search('harbour')
        self.wait_for_results(3)
        self.screen.press('Escape')
        self.wait_for_title('Plovendix')
        self.tree.find('label', 'Drop a video here')
        self.wait_for_no('list', 'Results')
        wait_for(lambda: self.field().text == '', 'the field is empty')
        self.wait_for_no('push button', 'Cancel search')


class LongSearchTest(ProgramTest):
    def test_the_cancel_button_comes_after_ten_seconds(self):
        self.launch()
        self.search('later')
        self.tree.find(name='Searching')
        remains(lambda: not self.tree.find_all('push button', 'Cancel search'), 'the button is hidden',
                REVEAL_SECONDS - 4)
        self.tree.find('push button', 'Cancel search')
        self.answer_held()
        self.wait_for_results(3)
        self.tree.find('push button', 'Cancel search')

    def test_the_cancel_button_ends_a_long_search_and_keeps_the_words(self):
        self.launch()
        self.search('later')
        self.click(self.tree.find('push button', 'Cancel search'))
        self.wait_for_no('push button', 'Cancel search')
        self.wait_for_no(None, 'Searching')
        self.assertEqual(self.field().text, 'later')
        self.wait_for_focus(self.field())
        self.screen.type('harbour 2')
        self.screen.press('Return')
        self.wait_for_results(2)
        self.answer_held()
        self.click(self.tree.find('push button', 'Cancel search'))
        wait_for(lambda: self.field().text == '', 'after a search it empties the field')
        self.wait_for_title('Plovendix')

    def test_escape_cancels_a_search_and_keeps_the_words(self):
        self.launch()
        self.search('later')
        self.tree.find(name='Searching')
        self.screen.press('Escape')
        self.wait_for_no(None, 'Searching')
        self.assertEqual(self.field().text, 'later')
        self.answer_held()
        self.search('harbour')
        self.wait_for_results(3)
        self.assertTrue(self.row(1).name.startswith('Result.1.harbour'))


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

    def test_escape_dismisses_the_alert_alone(self):
        self.launch()
        self.search('harbour')
        self.wait_for_results(3)
        self.search('refuse')
        self.tree.find('alert message')
        self.screen.press('Escape')
        self.wait_for_no('alert message')
        self.assertEqual(len(self.rows()), 3)

    def test_a_service_that_never_answers_leaves_the_window_usable(self):
        self.launch()
        self.search('never')
        self.tree.find(name='Searching')
        self.search('harbour 2')
        self.wait_for_results(2)


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

    def test_a_file_that_cannot_be_hashed_is_searched_for_by_its_name(self):
        self.launch(self.video('notes 4.txt'))
        self.wait_for_results(4)
        self.assertIn('Failed to create a file hash for the url', self.program.lines())
        self.assertEqual(self.row(1).name, 'Result.1.notes.4.txt, Scripted film')

    def test_the_words_of_a_name_are_searched_for_when_the_hash_finds_nothing(self):
        self.launch(self.video('nothing.here.mkv'))
        wait_for(lambda: self.field().text == 'nothing here', lambda: f'the field shows words, not {self.field().text}')
        self.tree.find('label', lambda name: name.startswith('Nothing found for “nothing here”'))

    def test_the_sample_is_found_in_the_catalogue(self):
        folder = os.path.join(BUILD, 'resources', 'sample')
        sample, = (name for name in os.listdir(folder) if name.endswith('.mkv'))
        self.launch(os.path.join(folder, sample), program=REAL)
        wait_for(lambda: len(self.rows()) > 1, 'the catalogue has several subtitles')
        self.assertIn('matches this file', self.rows()[0].name)


if __name__ == '__main__':
    unittest.main(verbosity=2)
