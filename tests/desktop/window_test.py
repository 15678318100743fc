"""The window among other windows: its frame, title bar, edges and states, with and without a compositor."""
import unittest

from program_test import ProgramTest
from screen import RIGHT
from waiting import remains, wait_for

MAXIMIZED = {'_NET_WM_STATE_MAXIMIZED_VERT', '_NET_WM_STATE_MAXIMIZED_HORZ'}
SCREEN = (1280, 1024)
CONTENT = (760, 640)
# How far the pointer goes before a press becomes a drag, in the steps of these tests; the window lags behind by that.
LAG = 25
# A point of the title bar between the menu button and the title, from the frame's corner.
TITLE_BAR = (150, 19)
# Red, green and blue together: the title of the active window is darker, that of another one lighter.
FULL_STRENGTH = 200


class WindowTest(ProgramTest):
    def drag(self, start, end):
        """Drags the window by its title bar or an edge."""
        before = self.frame()
        self.screen.drag(start, end, lambda: self.frame() != before)


class FrameTest(WindowTest):
    def setUp(self):
        super().setUp()
        self.launch()

    def title_bar(self):
        x, y, _, _ = self.frame()
        return x + TITLE_BAR[0], y + TITLE_BAR[1]

    def wait_for_maximized(self, maximized=True):
        wait_for(lambda: (MAXIMIZED <= self.screen.states(self.window)) == maximized,
                 lambda: f'maximized is {maximized}; the states are {self.screen.states(self.window)}')

    def wait_for_frame(self, frame):
        wait_for(lambda: self.frame() == frame, lambda: f'the frame is {frame}, not {self.frame()}')

    def ground(self):
        return self.screen.colour(2, 2)

    def test_it_stands_in_the_middle_with_rounded_corners_and_a_shadow(self):
        x, y, width, height = self.frame()
        self.assertEqual((width, height), CONTENT)
        self.assertLessEqual(abs(x + width / 2 - SCREEN[0] / 2), 1)
        self.assertLessEqual(abs(y + height / 2 - SCREEN[1] / 2), 1)
        self.assertTrue(all(side > 0 for side in self.margin()))

        def is_drawn():
            picture = self.screen.picture()
            inside = picture.colour(x + 20, y + 5)
            corner, shadow = picture.colour(x, y), picture.colour(x + width // 2, y + height + 2)
            return corner != inside and shadow != self.ground() and sum(shadow) < sum(self.ground())
        wait_for(is_drawn, 'the corner is cut and the shadow darkens what is behind')

    def test_maximised_it_fills_the_screen_without_margin_or_round_corners(self):
        before = self.frame()
        self.click(self.tree.find('push button', 'Maximize'))
        self.wait_for_maximized()
        self.wait_for_frame((0, 0, *SCREEN))
        self.assertEqual(self.margin(), (0, 0, 0, 0))
        wait_for(lambda: self.screen.colour(0, 0) == self.screen.colour(20, 5), 'the corner is square')
        self.click(self.tree.find('push button', 'Restore'))
        self.wait_for_maximized(False)
        self.wait_for_frame(before)
        self.tree.find('push button', 'Maximize')

    def test_the_minimize_button_hides_it_and_it_comes_back_whole(self):
        before = self.frame()
        self.click(self.tree.find('push button', 'Minimize'))
        wait_for(lambda: '_NET_WM_STATE_HIDDEN' in self.screen.states(self.window), 'it is minimised')
        self.screen.activate(self.window)
        wait_for(lambda: '_NET_WM_STATE_HIDDEN' not in self.screen.states(self.window), 'it is shown')
        self.wait_for_frame(before)

    def test_the_title_bar_moves_it(self):
        x, y, width, height = self.frame()
        start = self.title_bar()
        self.drag(start, (start[0] - 120, start[1] + 60))
        wait_for(lambda: self.frame()[:2] != (x, y), 'it has moved')
        wait_for(lambda: abs(self.frame()[0] - (x - 120)) <= LAG and abs(self.frame()[1] - (y + 60)) <= LAG,
                 lambda: f'it follows the pointer to {(x - 120, y + 60)}, not {self.frame()}')
        self.assertEqual(self.frame()[2:], (width, height))

    def test_edges_and_corners_resize_it(self):
        x, y, width, height = self.frame()
        right, bottom = x + width, y + height
        self.drag((right + 1, y + height // 2), (right + 81, y + height // 2))
        wait_for(lambda: abs(self.frame()[2] - (width + 80)) <= LAG, lambda: f'it is wider, not {self.frame()}')
        self.assertEqual(self.frame()[:2], (x, y))
        self.drag((x - 1, bottom + 1), (x - 41, bottom + 31))
        wait_for(lambda: abs(self.frame()[0] - (x - 40)) <= LAG and abs(self.frame()[3] - (height + 30)) <= LAG,
                 lambda: f'the lower left corner has moved, not {self.frame()}')

    def test_right_click_on_the_title_bar_opens_the_window_menu(self):
        self.screen.click(*self.title_bar(), button=RIGHT)
        self.wait_for_menu()
        # Restore cannot be chosen now, so the third step down is Maximize.
        self.screen.press('Down', 'Down', 'Down', 'Return')
        self.wait_for_maximized()
        self.screen.click(*self.title_bar(), button=RIGHT)
        self.wait_for_menu()
        self.screen.press('Down', 'Return')
        self.wait_for_maximized(False)

    def test_the_title_keeps_its_strength_while_the_main_menu_is_open(self):
        x, y, width, _ = self.frame()
        # The title stands in the middle, away from the menu and from the buttons.
        title = [(x + width // 2 + dx, y + dy) for dx in range(-30, 31) for dy in range(8, 30)]

        def darkest():
            picture = self.screen.picture()
            return min(sum(picture.colour(*point)) for point in title)
        # The window is active before it is painted so: at first its title is grey still.
        wait_for(lambda: darkest() < FULL_STRENGTH,
                 lambda: f'the title is at full strength, not {darkest()}')
        before = darkest()
        self.click(self.tree.find('button menu', 'Main menu'))
        self.wait_for_menu()
        remains(lambda: darkest() == before, 'the title is as dark as it was', 0.5)
        self.screen.press('Escape')

    def wait_for_menu(self):
        wait_for(lambda: len(self.screen.windows_of(self.program.pid)) > 1, 'a menu is shown')

    def test_clicks_on_the_shadow_go_to_what_is_behind(self):
        source, _ = self.desktop.drag_source('text/plain', 'words')
        self.addCleanup(source.stop)
        behind = self.screen.window('^Drag source$')
        x, y, _, height = self.frame()
        self.screen.move_window(behind, x - 150, y + height - 60)
        self.screen.activate(self.window)
        self.screen.click(x - self.margin()[0] + 4, y + height - 20)
        wait_for(lambda: self.screen.active_window() == behind, 'the window behind is active')

    def test_the_close_button_ends_the_program(self):
        self.click(self.tree.find('push button', 'Close'))
        self.assertEqual(self.program.wait_for_exit(), 0)


class NoCompositorTest(WindowTest):
    compositor = False

    def test_without_a_compositor_there_is_neither_margin_nor_round_corner(self):
        self.launch()
        self.assertEqual(self.margin(), (0, 0, 0, 0))
        x, y, width, height = self.frame()
        self.assertEqual((width, height), CONTENT)

        def is_filled():
            picture = self.screen.picture()
            points = [picture.colour(*point) for point in ((x + 2, y + 2), (x + width - 3, y + 2), (x + 60, y + 4))]
            return len(set(points)) == 1 and points[0] != picture.colour(2, 2)
        wait_for(is_filled, 'the corners are filled like the rest of the title bar')

    def test_it_can_be_moved_and_resized_there_too(self):
        self.launch()
        x, y, width, height = self.frame()
        start = (x + TITLE_BAR[0], y + TITLE_BAR[1])
        self.drag(start, (start[0] - 100, start[1]))
        wait_for(lambda: abs(self.frame()[0] - (x - 100)) <= LAG, lambda: f'it has moved, not {self.frame()}')
        x = self.frame()[0]
        self.drag((x + width - 1, y + height // 2), (x + width + 79, y + height // 2))
        wait_for(lambda: abs(self.frame()[2] - (width + 80)) <= LAG, lambda: f'it is wider, not {self.frame()}')

    def test_a_compositor_that_starts_later_is_noticed(self):
        self.launch()
        self.assertEqual(self.margin(), (0, 0, 0, 0))
        compositor = self.desktop.start(['xcompmgr'], 'xcompmgr')
        self.addCleanup(compositor.stop)
        wait_for(lambda: all(side > 0 for side in self.margin()), 'the window has a shadow')
        wait_for(lambda: self.frame()[2:] == CONTENT, lambda: f'the content keeps its size, not {self.frame()}')
        compositor.stop()
        wait_for(lambda: self.margin() == (0, 0, 0, 0), 'the shadow is gone')
        remains(self.program.runs, 'the program runs', 0.2)


if __name__ == '__main__':
    unittest.main(verbosity=2)
