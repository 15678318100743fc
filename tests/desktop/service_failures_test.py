"""The messages shown when the network's services fail, and that the program lives through it."""
import datetime
import os
import re
import signal
import unittest

from program_test import BUILD, REAL
from service import NOWHERE, ServiceTest
from waiting import wait_for

# Nine hours ahead, in a form that needs no table of zones.
ZONE = 'JST-9'
LOCAL = datetime.timezone(datetime.timedelta(hours=9))
RESET_SECONDS = 120


class SearchFailureTest(ServiceTest):
    SENTENCES = {
        'down': 'The subtitle service is not available right now. Try again in a few minutes.',
        'html': 'The subtitle service gave an answer that makes no sense.',
        'unknown-key': 'The subtitle service does not accept this API key. Check it in the preferences.',
        'too-fast-hour': 'The subtitle service gets too many requests from here.',
    }

    def test_each_failure_has_its_sentence(self):
        for behaviour, sentence in self.SENTENCES.items():
            with self.subTest(behaviour):
                self.serve(behaviour)
                self.open()
                self.search('paper lighthouse')
                self.assertIn(sentence, self.alert_text())
                self.dismiss_alert()
                self.assert_usable()
                self.program.stop()
                self.service.stop()

    def test_without_a_network_the_catalogue_answers(self):
        self.set(SubtitleServiceURL=NOWHERE)
        self.open(films=False, key=False, environment={'PLOVENDIX_SUBTITLE_API_KEY': 'a-key'})
        self.search('paper lighthouse')
        self.assertIn('There is no connection to the subtitle service.', self.alert_text())
        self.dismiss_alert()
        self.search('harbour lights')
        wait_for(self.rows, 'the catalogue has rows')
        self.tree.find('label', 'Offline: showing the local catalogue')
        self.wait_for_no('alert message')

    def test_a_redirect_abroad_carries_nothing_there(self):
        self.serve('redirect-abroad')
        self.open()
        self.search('paper lighthouse')
        self.alert_text()
        api = self.requests('/api/v1/subtitles')
        self.assertEqual(len(api), 1)
        self.assertEqual({line['port'] for line in self.requests()}, {api[0]['port']})


class DownloadFailureTest(ServiceTest):
    def open_panel(self, **options):
        self.open(**options)
        self.find_results()
        self.select_first()

    def assert_said(self, sentence):
        self.screen.press('ctrl+s')
        said = self.alert_text()
        self.assertIn(sentence, said)
        self.dismiss_alert()
        wait_for(lambda: self.tree.find('push button', 'Download').has('enabled'), 'another download can be tried')
        return said

    def test_a_login_that_is_not_accepted_is_not_repeated(self):
        self.serve()
        self.open_panel(account=True, environment={'PLOVENDIX_SUBTITLE_PASSWORD': 'wrong'})
        for _ in range(2):
            self.assert_said('User name or password not accepted (use the user name, not the e-mail address).')
        self.assertEqual(len(self.requests('/api/v1/login')), 1)
        self.assertEqual(self.requests('/api/v1/download'), [])

    def test_the_limit_and_when_it_ends_in_local_time(self):
        self.serve('quota-used', 'quota-reset-soon')
        self.open_panel(environment={'TZ': ZONE})
        began = datetime.datetime.now(LOCAL)
        said = self.assert_said('ownload limit reached')
        ended = datetime.datetime.now(LOCAL)
        told, = re.findall(r'New downloads from (\d\d:\d\d) \(in [123] min\)\.', said)
        reset = datetime.timedelta(seconds=RESET_SECONDS)
        self.assertIn(told, {(time + reset).strftime('%H:%M') for time in (began, ended)})
        self.tree.find('label', 'Downloads left: 0')

    def test_what_is_no_subtitle(self):
        self.serve('subtitle-html')
        self.open_panel()
        self.assert_said('What the service sent is not a subtitle.')


class KilledServiceTest(ServiceTest):
    """The service is killed in the middle of an answer."""

    def kill(self):
        os.kill(self.service.pid, signal.SIGKILL)
        self.service.wait_for_exit()

    def open_panel(self, **options):
        self.open(**options)
        self.find_results()
        self.select_first()

    def test_in_a_download(self):
        self.serve('drip@link')
        self.open_panel()
        self.screen.press('ctrl+s')
        self.wait_for_request('/download/')
        self.kill()
        self.assertIn('The subtitle service is not available right now.', self.alert_text())
        self.dismiss_alert()
        self.assert_usable()

    def test_in_a_poster(self):
        self.serve('drip@image')
        self.open_panel()
        wait_for(lambda: [line for line in self.requests() if line['target'].endswith('.jpg')], 'a picture is asked for')
        self.kill()
        self.program.wait_for_line('Error: The film database is not available right now. Try again in a few minutes.')
        self.assertEqual(self.tree.find_all('alert message'), [])
        self.assert_usable()

    def quit_with_a_login(self):
        """Quits a program that has to log out first, which the service does not answer."""
        self.serve('stall@logout')
        self.open_panel(account=True)
        self.screen.press('ctrl+s')
        self.assertTrue(self.suggested_name().text)
        self.screen.press('Escape')
        self.wait_for_no('dialog', 'Save')
        self.screen.press('ctrl+q')
        self.wait_for_request('/api/v1/logout')

    def test_while_the_program_quits(self):
        self.quit_with_a_login()
        self.kill()
        self.assertEqual(self.program.wait_for_exit(), 0)

    def test_a_start_while_the_last_run_still_logs_out(self):
        self.quit_with_a_login()
        leaving = self.program
        self.launch(program=REAL)
        self.assertTrue(leaving.runs(), 'the last run still waits for its answer')
        self.assertEqual(leaving.wait_for_exit(), 0)
        again = self.desktop.start([os.path.join(BUILD, REAL)], 'again', environment=self.home)
        self.assertEqual(again.wait_for_exit(), 0, 'the new run is the one that later starts find')


if __name__ == '__main__':
    unittest.main(verbosity=2)
