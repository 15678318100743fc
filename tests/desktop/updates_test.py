"""The update and feedback windows, opened through the menu, with the maker's servers on this machine."""
import os
import unittest

from maker import Maker
from program_test import BUILD, ProgramTest
from waiting import wait_for


CHECK_FOR_UPDATES, SEND_FEEDBACK = ['Down'] * 4, ['Down'] * 6


class MakerTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.maker = self.enterContext(Maker(BUILD, self.home['HOME']))
        self.set(**self.maker.settings())

    def start(self):
        self.launch(program=self.maker.program)

    def wait_for_window(self, title):
        window = self.screen.window(f'^{title}$')
        wait_for(lambda: self.screen.active_window() == window, f'"{title}" is active')
        return window

    def open_updates(self):
        self.screen.activate(self.window)
        self.choose(*CHECK_FOR_UPDATES)
        return self.wait_for_window('Software Update')

    def open_feedback(self):
        self.screen.activate(self.window)
        self.choose(*SEND_FEEDBACK)
        return self.wait_for_window('Send Feedback')

    def wait_until_gone(self, title):
        wait_for(lambda: not self.screen.windows(f'^{title}$'), f'"{title}" is gone')

    def said(self, beginning):
        self.tree.find('label', lambda name: name.startswith(beginning))


class UpdatesTest(MakerTest):
    def test_a_newer_version(self):
        self.maker.offer('1.1')
        self.start()
        self.open_updates()
        self.said('Plovendix 1.1 is available; you have 1.0.')
        notes = self.tree.find('text', 'What is new')
        self.assertIn('• Subtitles in Icelandic and Welsh', notes.text)
        self.assertNotIn('<', notes.text)
        # No program here opens web pages, so the address is shown instead.
        self.click(self.tree.find('push button', 'Get the Update'))
        self.tree.find('label', lambda name: name.endswith('\nhttps://www.quorvane.example/plovendix'))
        self.screen.press('Escape')
        self.wait_until_gone('Software Update')

    def test_closing_the_main_window_ends_the_program_with_them_open(self):
        self.start()
        self.open_updates()
        self.open_feedback()
        self.screen.close_window(self.window)
        self.assertEqual(self.program.wait_for_exit(), 0)


class FeedbackTest(MakerTest):
    def folder(self):
        return os.path.join(self.home['XDG_DATA_HOME'], 'Plovendix', 'feedback')

    def write(self, text):
        self.open_feedback()
        self.wait_for_focus(self.tree.find('text', 'What would you like to tell us?'))
        self.screen.type(text)

    def test_a_report_is_what_the_window_shows(self):
        self.start()
        self.write('It works')
        shown = self.tree.find('text', 'What is sent with it').text
        self.screen.press('ctrl+Return')
        self.said('Thank you. Your report was sent.')
        report, = self.maker.reports
        self.assertEqual(report['text'], 'It works')
        self.assertEqual(sorted(f'{name}: {value}' for name, value in report['parameters'].items()),
                         sorted(shown.splitlines()))
        self.assertEqual(sorted(report), ['parameters', 'text'])
        self.screen.press('Escape')
        self.wait_until_gone('Send Feedback')

    def test_a_report_that_cannot_be_sent_is_offered_by_the_next_run(self):
        self.maker.status = 503
        self.start()
        self.write('It does not')
        self.screen.press('ctrl+Return')
        self.tree.find('label', lambda name: self.folder() in name)
        self.assertEqual(len(os.listdir(self.folder())), 1)
        self.screen.activate(self.window)
        self.screen.press('ctrl+q')
        self.assertEqual(self.program.wait_for_exit(), 0)
        self.maker.status = 200
        self.start()
        self.open_feedback()
        wait_for(lambda: self.tree.find('text', 'What would you like to tell us?').text == 'It does not', 'the text is back')
        self.screen.press('ctrl+Return')
        self.said('Thank you. Your report was sent.')
        self.assertEqual(os.listdir(self.folder()), [])


if __name__ == '__main__':
    unittest.main()
