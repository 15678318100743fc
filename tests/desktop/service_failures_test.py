"""The messages shown when the network's services fail, and that the program lives through it."""
import datetime
import http.client
import json
import os
import re
import signal
import unittest
import urllib.parse

from program_test import BUILD, REAL
from service import NOWHERE, ServiceTest
from waiting import wait_for

# Nine hours ahead, said in a way that needs no table of zones.
ZONE = 'JST-9'
LOCAL = datetime.timezone(datetime.timedelta(hours=9))
RESET_SECONDS = 120


class LogTest(ServiceTest):
    """The log that every test here is judged by, with a client that does everything wrong."""

    HEADERS = {'User-Agent': 'Plovendix v1.0', 'Accept': '*/*'}

    def setUp(self):
        super().setUp()
        self.serve()
        self.headers = {**self.HEADERS, 'Api-Key': self.addresses['PLOVENDIX_SUBTITLE_API_KEY']}
        self.port = int(self.addresses['SubtitleServiceURL'].split(':')[2].split('/')[0])

    def ask(self, target, headers, port=None, body=None):
        connection = http.client.HTTPConnection('127.0.0.1', port or self.port)
        connection.request('POST' if body else 'GET', target, body, headers)
        answer = connection.getresponse()
        text = answer.read()
        connection.close()
        return text

    def assert_seen(self, *misdeeds):
        self.assertEqual(self.misdeeds(), list(misdeeds))
        self.end_service()

    def test_a_good_client(self):
        self.ask('/api/v1/subtitles?languages=en&query=film', self.headers)
        self.assert_seen()

    def test_an_address_that_is_not_canonical(self):
        self.ask('/api/v1/subtitles?query=film&languages=en', self.headers)
        self.assert_seen('caused a redirect: /api/v1/subtitles?query=film&languages=en')

    def test_missing_headers(self):
        self.ask('/api/v1/infos/formats', {'Api-Key': self.headers['Api-Key']})
        self.assert_seen('without its headers: /api/v1/infos/formats')

    def test_a_missing_key(self):
        self.ask('/api/v1/infos/formats', self.HEADERS)
        self.assert_seen('without the key: /api/v1/infos/formats')

    def test_a_key_at_the_host_of_the_links(self):
        order = json.loads(self.ask('/api/v1/download', self.headers, body='{"file_id":9200001}'))
        link = urllib.parse.urlsplit(order['link'])
        self.ask(link.path, {**self.headers, 'Authorization': 'Bearer token'}, port=link.port)
        self.assert_seen(f'a key at a foreign host: {link.path}', f'a token at a foreign host: {link.path}')

    def test_a_key_at_the_film_database(self):
        self.ask('/3/configuration', self.headers)
        self.assert_seen('a key at a foreign host: /3/configuration')

    def test_haste(self):
        for _ in range(6):
            self.ask('/api/v1/infos/formats', self.headers)
        self.assert_seen('6 requests in a second')

    def test_a_refused_login_again(self):
        for _ in range(2):
            self.ask('/api/v1/login', self.headers, body='{"username":"reader","password":"wrong"}')
        self.assert_seen('a refused login was repeated')


class SearchFailureTest(ServiceTest):
    def assert_said(self, sentence, query='paper lighthouse'):
        self.search(query)
        self.assertIn(sentence, self.alert_text())
        self.dismiss_alert()
        self.assert_usable()

    def test_no_network(self):
        self.set(SubtitleServiceURL=NOWHERE)
        self.open(films=False, key=False, environment={'PLOVENDIX_SUBTITLE_API_KEY': 'a-key'})
        self.assert_said('There is no connection to the subtitle service. Check your network and search again.')

    def test_a_service_that_is_down(self):
        self.serve('down')
        self.open()
        self.assert_said('The subtitle service is not available right now.')
        self.assertEqual(len(self.requests('/api/v1/subtitles')), 3)

    def test_a_service_that_talks_nonsense(self):
        self.serve('html')
        self.open()
        self.assert_said('The subtitle service gave an answer that makes no sense.')

    def test_a_key_that_is_not_accepted(self):
        self.serve('unknown-key')
        self.open()
        self.assert_said('The subtitle service does not accept this API key. Check it in the preferences.')
        self.assertEqual(len(self.requests('/api/v1/subtitles')), 1)

    def test_a_service_that_asks_for_an_hour(self):
        self.serve('too-fast-hour')
        self.open()
        self.assert_said('The subtitle service gets too many requests from here.')

    def test_a_redirect_abroad_carries_nothing_there(self):
        self.serve('redirect-abroad')
        self.open()
        self.search('paper lighthouse')
        self.alert_text()
        api = self.requests('/api/v1/subtitles')
        self.assertEqual(len(api), 1)
        self.assertEqual({line['port'] for line in self.requests()}, {api[0]['port']})
        # This redirect was the service's own idea.
        self.assertEqual(self.misdeeds(), [f'caused a redirect: {api[0]["target"]}'])
        self.end_service()

    def test_the_catalogue_answers_although_the_service_is_down(self):
        self.serve('broken')
        self.open()
        self.search('harbour lights')
        wait_for(self.rows, 'the catalogue has rows')
        self.tree.find('label', 'The online service could not be used: showing the local catalogue')
        self.wait_for_no('alert message')

    def test_the_catalogue_answers_although_the_key_is_not_accepted(self):
        self.serve('unknown-key')
        self.open()
        self.search('harbour lights')
        wait_for(self.rows, 'the catalogue has rows')
        self.tree.find('label', lambda name: name.startswith('The online service does not accept the key'))
        self.wait_for_no('alert message')

    def test_the_catalogue_answers_without_a_network(self):
        self.set(SubtitleServiceURL=NOWHERE)
        self.open(films=False, key=False, environment={'PLOVENDIX_SUBTITLE_API_KEY': 'a-key'})
        self.search('harbour lights')
        wait_for(self.rows, 'the catalogue has rows')
        self.tree.find('label', 'Offline: showing the local catalogue')
        self.wait_for_no('alert message')

    def test_nothing_found_is_no_failure(self):
        self.serve('hits-0')
        self.open()
        self.search('paper lighthouse')
        self.tree.find('label', lambda name: name.startswith('Nothing found for “paper lighthouse” in English'))
        self.wait_for_no('alert message')
        self.wait_for_no('label', lambda name: 'offline catalogue' in name)


class DownloadFailureTest(ServiceTest):
    def assert_said(self, sentence):
        self.screen.press('ctrl+s')
        said = self.alert_text()
        self.assertIn(sentence, said)
        self.dismiss_alert()
        wait_for(lambda: self.tree.find('push button', 'Download').has('enabled'), 'another download can be tried')
        return said

    def open_panel(self, **options):
        self.open(**options)
        self.find_results()
        self.select_first()

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
    """The service dies in the middle of an answer, for good."""

    def kill(self):
        os.kill(self.service.pid, signal.SIGKILL)
        self.service.wait_for_exit()

    def test_in_a_search(self):
        self.serve('drip')
        self.open()
        self.search('paper lighthouse')
        self.wait_for_request('/api/v1/subtitles')
        self.kill()
        self.assertIn('The subtitle service is not available right now.', self.alert_text())
        self.dismiss_alert()
        self.assert_usable()

    def test_in_a_search_that_the_person_gives_up(self):
        self.serve('stall')
        self.open()
        self.search('paper lighthouse')
        self.wait_for_request('/api/v1/subtitles')
        self.kill()
        self.screen.press('Escape')
        self.wait_for_no(None, 'Searching')
        self.search('harbour lights')
        wait_for(self.rows, 'the catalogue has rows')
        self.assertEqual(self.tree.find_all('alert message'), [])

    def test_in_a_download(self):
        self.serve('drip@link')
        self.open()
        self.find_results()
        self.select_first()
        self.screen.press('ctrl+s')
        self.wait_for_request('/download/')
        self.kill()
        self.assertIn('The subtitle service is not available right now.', self.alert_text())
        self.dismiss_alert()
        wait_for(lambda: self.tree.find('push button', 'Download').has('enabled'), 'another download can be tried')
        self.assert_usable()

    def test_in_a_poster(self):
        self.serve('drip@image')
        self.open()
        self.find_results()
        self.select_first()
        wait_for(lambda: [line for line in self.requests() if line['target'].endswith('.jpg')], 'a picture is asked for')
        self.kill()
        self.program.wait_for_line('Error: The film database is not available right now. Try again in a few minutes.')
        self.assertEqual(self.tree.find_all('alert message'), [])
        self.tree.find('push button', 'Download')
        self.assert_usable()

    def test_while_the_program_quits(self):
        self.serve('stall@logout')
        self.open(account=True)
        self.find_results()
        self.select_first()
        self.screen.press('ctrl+s')
        self.assertTrue(self.suggested_name().text)
        self.screen.press('Escape')
        self.wait_for_no('dialog', 'Save')
        self.screen.press('ctrl+q')
        self.wait_for_request('/api/v1/logout')
        self.kill()
        self.assertEqual(self.program.wait_for_exit(), 0)

    def test_a_start_while_the_last_run_still_logs_out(self):
        self.serve('stall@logout')
        self.open(account=True)
        self.find_results()
        self.select_first()
        self.screen.press('ctrl+s')
        self.assertTrue(self.suggested_name().text)
        self.screen.press('Escape')
        self.wait_for_no('dialog', 'Save')
        self.screen.press('ctrl+q')
        self.wait_for_request('/api/v1/logout')
        leaving = self.program
        self.launch(program=REAL)
        self.assertTrue(leaving.runs(), 'the last run still waits for its answer')
        self.assertEqual(leaving.wait_for_exit(), 0)
        again = self.desktop.start([os.path.join(BUILD, REAL)], 'again', environment=self.home)
        self.assertEqual(again.wait_for_exit(), 0, 'the new run is the one that later starts find')


if __name__ == '__main__':
    unittest.main(verbosity=2)
