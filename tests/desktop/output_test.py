"""Standard output that cannot be written: the program says what it promises as far as it goes, and goes on."""
import os
import unittest

from program_test import ProgramTest


class OutputTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.reading, self.writing = os.pipe()
        self.addCleanup(os.close, self.writing)

    def search_that_prints(self):
        """A search that fails writes a line beginning with "Error: "."""
        self.search('refuse')
        self.tree.find('alert message')
        self.screen.press('Return')
        self.wait_for_no('alert message')

    def assert_the_window_works(self):
        self.search('harbour')
        self.wait_for_results(3)
        self.assertTrue(self.program.runs())

    def test_a_reader_that_is_gone_ends_nothing(self):
        os.close(self.reading)
        self.launch(stdout=self.writing)
        self.search_that_prints()
        self.assert_the_window_works()

    def test_a_reader_that_does_not_read_stops_nothing(self):
        self.addCleanup(os.close, self.reading)
        os.set_blocking(self.writing, False)
        filled = 0
        try:
            while True:
                filled += os.write(self.writing, b'\n' * 4096)
        except BlockingIOError:
            os.set_blocking(self.writing, True)
        self.launch(stdout=self.writing)
        self.search_that_prints()
        self.assert_the_window_works()
        while filled > 0:
            filled -= len(os.read(self.reading, filled))
        printed = b''
        while b'Error: The scripted service refuses.\n' not in printed:
            printed += os.read(self.reading, 4096)


if __name__ == '__main__':
    unittest.main()
