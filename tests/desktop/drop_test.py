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
        self.unmarked = self.screen.colour(*self.edge)

    def take_hold(self, *names, mime_type='text/uri-list', data=None):
        """Presses the mouse button on another program's window that offers these videos, or some other data."""
        if data is None:
            data = ''.join(pathlib.Path(self.video(name)).as_uri() + '\r\n' for name in names)
        self.source, self.grip = self.desktop.drag_source(mime_type, data)
        self.addCleanup(self.source.stop)
        self.screen.button_down(*self.grip)

    def is_outlined(self):
        return self.screen.colour(*self.edge) != self.unmarked

    def test_the_drop_area_is_outlined_only_while_a_file_hovers(self):
        self.take_hold('Harbour.mkv')
        self.screen.glide(self.grip, self.inside)
        self.program.wait_for_line(ENTERED)
        wait_for(self.is_outlined, 'the outline shows')
        red, _, blue = self.screen.colour(*self.edge)
        self.assertGreater(blue, red, 'the outline has the accent colour')
        self.screen.glide(self.inside, self.outside)
        self.program.wait_for_line(ENTERED, count=2)
        wait_for(lambda: not self.is_outlined(), 'the outline is gone')
        self.screen.button_up()
        self.source.wait_for_line('refused')
        self.assertEqual(self.screen.title(self.window), 'Plovendix')

    def test_a_drop_searches_for_the_file(self):
        self.take_hold('Harbour.mkv')
        self.screen.glide(self.grip, self.inside)
        self.screen.button_up()
        self.source.wait_for_line('taken')
        self.wait_for_results(3)
        self.assertEqual(self.field().text, 'Harbour.mkv')
        self.program.wait_for_line(pathlib.Path(self.videos, 'Harbour.mkv').as_uri())
        self.assertFalse(self.is_outlined())

    def test_the_first_of_several_files_counts(self):
        self.take_hold('First.mkv', 'Second.mkv')
        self.screen.glide(self.grip, self.inside)
        self.screen.button_up()
        self.wait_for_results(3)
        self.assertEqual(self.row(1).name, 'Result.1.First, Scripted film')

    def test_text_is_refused_without_an_outline(self):
        self.take_hold(mime_type='text/plain', data='words')
        self.screen.glide(self.grip, self.inside)
        self.program.wait_for_line(ENTERED)
        self.assertFalse(self.is_outlined())
        self.screen.button_up()
        self.source.wait_for_line('refused')
        self.assertEqual(self.screen.title(self.window), 'Plovendix')

    def test_a_second_drop_while_results_show_searches_again(self):
        self.search('harbour 6')
        self.wait_for_results(6)
        self.take_hold('Second.film.mkv')
        self.screen.glide(self.grip, self.inside)
        wait_for(self.is_outlined, 'the outline shows over the results')
        self.screen.button_up()
        self.wait_for_results(3)
        self.assertEqual(self.row(1).name, 'Result.1.Second.film, Scripted film')
        wait_for(lambda: not self.is_outlined(), 'the outline is gone')

    def test_a_drop_while_a_search_runs_is_answered_first(self):
        self.search('later')
        self.tree.find(name='Searching')
        self.take_hold('Harbour.mkv')
        self.screen.glide(self.grip, self.inside)
        self.screen.button_up()
        self.wait_for_results(3)
        self.assertEqual(self.row(1).name, 'Result.1.Harbour, Scripted film')


if __name__ == '__main__':
    unittest.main(verbosity=2)
