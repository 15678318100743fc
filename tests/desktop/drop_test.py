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
        self.title_bar = (x + width // 2, y + 18)
        self.header = (x + 6, y + 60)
        self.panel = (x + width // 2, y + height - 60)
        self.outside = (60, 900)
        # On the left, where neither the search field nor the panel covers the outline.
        self.edge = (x + OUTLINE_PIXELS // 2, y + height // 3)
        self.beside_the_edge = (x + 3 * OUTLINE_PIXELS, y + height // 3)

    def carry_inside(self, *names, mime_type='text/uri-list', data=None, point=None):
        """Carries these videos, or some other data, from another program's window onto the drop area or a point."""
        point = point or self.inside
        if data is None:
            data = ''.join(pathlib.Path(self.video(name)).as_uri() + '\r\n' for name in names)
        self.source, grip = self.desktop.drag_source(mime_type, data)
        self.addCleanup(self.source.stop)
        # A test that fails must not leave the button down for the next one.
        self.addCleanup(self.screen.button_up)
        entered = self.program.lines().count(ENTERED)
        self.desktop.carry(self.source, grip, point)
        self.screen.hover(point, lambda: self.program.lines().count(ENTERED) > entered, 'the program sees the drag')

    def drop_inside(self, *names, point=None):
        self.carry_inside(*names, point=point)
        self.screen.hover(point or self.inside, self.is_outlined, 'the outline shows')
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

    def test_text_is_refused_without_an_outline(self):
        self.carry_inside(mime_type='text/plain', data='words')
        self.assertFalse(self.is_outlined())
        self.screen.button_up()
        self.source.wait_for_line('refused')
        self.assertEqual(self.screen.title(self.window), 'Plovendix')

    def test_a_file_is_searched_for_wherever_on_the_window_it_is_dropped(self):
        places = (('Title', self.title_bar), ('Field', self.field().centre), ('Header', self.header))
        for name, point in places:
            with self.subTest(place=name):
                self.drop_on(point, name)
        self.select(1)
        self.drop_on(self.panel, 'Panel')

    def drop_on(self, point, name):
        self.drop_inside(f'{name}.mkv', point=point)
        self.source.wait_for_line('taken')
        wait_for(lambda: self.row(1).name == f'Result.1.{name}, Scripted film', f'the file on the {name} is searched for')
        self.assertEqual(self.field().text, f'{name}.mkv')
        self.source.stop()


if __name__ == '__main__':
    unittest.main(verbosity=2)
