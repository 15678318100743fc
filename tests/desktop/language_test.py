"""The preferred language, changed in the title bar, in the preferences and by another program: each repeats the search."""
import os
import unittest

from program_test import ProgramTest
from waiting import wait_for

OTHER_PROGRAM_SETS = '[General]\nlanguageCode={}\n'


class LanguageTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.launch(self.video('Harbour.Lights.mkv'))
        self.wait_for_results(3)
        self.assertEqual(self.queries(), ['eng Harbour.Lights'])

    def queries(self):
        with open(self.script + '.queries', encoding='utf-8') as file:
            return file.read().splitlines()

    def wait_for_repeated_search(self, code, language):
        self.program.wait_for_line(f'language code changed to {code}')
        wait_for(lambda: len(self.queries()) > 1, 'the search is repeated')
        self.wait_for_results(3)
        self.assertEqual(self.queries(), ['eng Harbour.Lights', f'{language} Harbour.Lights'])
        self.assertEqual(self.program.lines().count(f'language code changed to {code}'), 1)

    def choose(self, pop_up, language):
        self.click(pop_up)
        self.screen.type(language)
        self.screen.press('Return')

    def test_in_the_title_bar(self):
        self.choose(self.tree.find('combo box', 'English'), 'German')
        self.wait_for_repeated_search('de', 'ger')

    def test_by_another_program(self):
        os.makedirs(os.path.dirname(self.settings), exist_ok=True)
        # As settings are saved: a whole new file takes the old one's place.
        with open(self.settings + '.new', 'w', encoding='utf-8') as file:
            file.write(OTHER_PROGRAM_SETS.format('fr'))
        os.rename(self.settings + '.new', self.settings)
        self.wait_for_repeated_search('fr', 'fre')
        self.tree.find('combo box', 'French')


if __name__ == '__main__':
    unittest.main(verbosity=2)
