"""Light and dark as the desktop's settings say, from the start and when they change."""
import unittest

from program_test import ProgramTest
from waiting import wait_for

DARK, LIGHT = 1, 2
HALF = 3 * 255 / 2


class AppearanceTest(ProgramTest):
    scheme = LIGHT

    def brightness(self):
        """The sum of red, green and blue in a corner of the content, where nothing else is drawn."""
        x, y, _, height = self.frame()
        return sum(self.screen.colour(x + 20, y + height - 20))

    def wait_for_dark(self, dark):
        wait_for(lambda: (self.brightness() < HALF) == dark, lambda: f'dark is {dark} at brightness {self.brightness()}')

    def test_it_follows_the_desktop_while_it_runs(self):
        self.launch()
        self.wait_for_dark(False)
        self.desktop.choose_scheme(DARK)
        self.wait_for_dark(True)
        self.desktop.choose_scheme(LIGHT)
        self.wait_for_dark(False)

    def test_it_starts_dark_on_a_dark_desktop(self):
        self.desktop.choose_scheme(DARK)
        self.addCleanup(self.desktop.choose_scheme, LIGHT)
        self.launch()
        self.wait_for_dark(True)


class WithoutPortalTest(ProgramTest):
    def test_without_a_settings_portal_it_is_light(self):
        self.launch()
        x, y, _, height = self.frame()
        wait_for(lambda: sum(self.screen.colour(x + 20, y + height - 20)) > HALF, 'it is light')


if __name__ == '__main__':
    unittest.main(verbosity=2)
