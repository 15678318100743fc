"""Drags from a program of another toolkit onto the window."""
import pathlib
import unittest

from program_test import ProgramTest
from waiting import wait_for

ENTERED = 'draggingEntered'
OUTLINE_PIXELS = 4


class DropTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.launch()
        # Out of the way of the program's window, which stands in the middle.
        x, y, width, height = self.frame()
        self.inside = (x + width // 2, y + height // 2)
        self.outside = (60, 900)
        self.edge = (x + width // 2, y + height - OUTLINE_PIXELS // 2)
        self.beside_the_edge = (x + width // 2, y + height - 30)

    def carry_inside(self, *names, mime_type='text/uri-list', data=None):
        """Carries these videos, or some other data, from another program's window onto the drop area."""
        if data is None:
            data = ''.join(pathlib.Path(self.video(name)).as_uri() + '\r\n' for name in names)
        self.source, grip = self.desktop.drag_source(mime_type, data)
        self.addCleanup(self.source.stop)
        # A test that fails must not leave the button down for the next one.
        self.addCleanup(self.screen.button_up)
        entered = self.program.lines().count(ENTERED)
        self.desktop.carry(self.source, grip, self.inside)
        self.screen.hover(self.inside, lambda: self.program.lines().count(ENTERED) > entered, 'the program sees the drag')

    def drop_inside(self, *names):
        self.carry_inside(*names)
        self.screen.hover(self.inside, self.is_outlined, 'the outline shows')
        self.screen.button_up()

    def is_outlined(self):
        picture = self.screen.picture()
        return picture.colour(*self.edge) != picture.colour(*self.beside_the_edge)

    def test_the_drop_area_is_outlined_only_while_a_file_hovers(self):
        self.carry_inside('Harbour.mkv')
        self.screen.hover(self.inside, self.is_outlined, 'the outline shows')
        red, _, blue = self.screen.colour(*self.edge)
        self.assertGreater(blue, red, 'the outline has the accent colour')
        self.screen.glide(self.inside, self.outside)
        self.screen.hover(self.outside, lambda: not self.is_outlined(), 'the outline is gone')
        self.assertEqual(self.program.lines().count(ENTERED), 2)
        self.screen.button_up()
        self.source.wait_for_line('refused')
        self.assertEqual(self.screen.title(self.window), 'Plovendix')

    def test_a_drop_searches_for_the_file(self):
        self.drop_inside('Harbour.mkv')
        self.source.wait_for_line('taken')
        self.wait_for_results(3)
        self.assertEqual(self.field().text, 'Harbour.mkv')
        self.program.wait_for_line(pathlib.Path(self.videos, 'Harbour.mkv').as_uri())
        self.assertFalse(self.is_outlined())

    def test_the_first_of_several_files_counts(self):
        self.drop_inside('First.mkv', 'Second.mkv')
        self.wait_for_results(3)
        self.assertEqual(self.row(1).name, 'Result.1.First, Scripted film')

    def test_text_is_refused_without_an_outline(self):
        self.carry_inside(mime_type='text/plain', data='words')
        self.assertFalse(self.is_outlined())
        self.screen.button_up()
        self.source.wait_for_line('refused')
        self.assertEqual(self.screen.title(self.window), 'Plovendix')

    def test_a_second_drop_while_results_show_searches_again(self):
        self.search('harbour 6')
        self.wait_for_results(6)
        self.drop_inside('Second.film.mkv')
        self.wait_for_results(3)
        self.assertEqual(self.row(1).name, 'Result.1.Second.film, Scripted film')
        wait_for(lambda: not self.is_outlined(), 'the outline is gone')

    def test_a_drop_while_a_search_runs_is_answered_first(self):
        self.search('later')
        self.tree.find(name='Searching')
        self.drop_inside('Harbour.mkv')
        self.wait_for_results(3)
        self.assertEqual(self.row(1).name, 'Result.1.Harbour, Scripted film')


if __name__ == '__main__':
    unittest.main(verbosity=2)
