"""The network's services in the program: keys, login, posters, downloads, and the pane where they are set."""
import os
import unittest

from names_test import CONTROLS
from service import ServiceTest, is_private
from waiting import wait_for

FOUND_ON_THE_NETWORK = 3
MOST_PAGES = 10
ROWS_OF_THESE = 500


class NetworkTest(ServiceTest):
    def test_a_search_goes_to_the_network_with_the_key_from_the_environment(self):
        self.serve()
        self.open()
        self.find_results()
        self.wait_for_title(f'Plovendix ({FOUND_ON_THE_NETWORK} subtitles found)')
        self.wait_for_request('/api/v1/infos/languages')
        self.assertEqual(sorted(line['target'] for line in self.requests()),
                         ['/api/v1/infos/languages', '/api/v1/subtitles?languages=en&query=paper+lighthouse'])

    def test_a_video_given_at_the_start_is_searched_for_on_the_network(self):
        self.serve()
        with open(self.video('Paper.Lighthouse.2019.mkv'), 'wb') as file:
            file.write(b'video ' * 50_000)
        self.open(os.path.join(self.videos, 'Paper.Lighthouse.2019.mkv'))
        self.wait_for_request('/api/v1/subtitles?languages=en&moviehash=')
        wait_for(self.rows, 'results are shown')

    def test_a_download_says_how_many_are_left_and_quitting_logs_out(self):
        self.serve()
        self.open(account=True)
        self.find_results()
        self.select_first()
        self.screen.press('ctrl+s')
        self.assertTrue(self.suggested_name().text)
        self.screen.press('Return')
        self.tree.find('label', 'Downloads left: 19')
        wait_for(lambda: os.listdir(self.videos), 'the subtitle is saved')
        self.screen.activate(self.window)
        self.screen.press('ctrl+q')
        self.assertEqual(self.program.wait_for_exit(), 0)
        self.assertEqual([line['status'] for line in self.requests('/api/v1/logout')], [200])

    def test_a_search_of_many_pages_never_keeps_the_window_waiting(self):
        self.serve('hits-1502')
        self.open()
        self.search('paper lighthouse')
        frame = self.tree.find('frame', lambda name: name.startswith('Plovendix'))
        answers = []

        def is_answered():
            answers.append(frame.name)  # by the main thread, in its turn
            return answers[-1] != 'Plovendix'
        wait_for(is_answered, 'the search ends')
        self.assertEqual(len(self.requests('/api/v1/subtitles')), MOST_PAGES)
        # What is done with a page is seen not to be done there by the tests of the search itself.
        self.assertGreater(len(answers), MOST_PAGES, answers)
        self.wait_for_title(f'Plovendix ({ROWS_OF_THESE} subtitles found)')

    def test_an_answer_of_thousands_of_rows_is_shown_and_the_program_quits(self):
        self.serve('one-name')
        self.open()
        self.find_results()
        self.search('paper boat')
        self.screen.press('ctrl+q')
        self.assertEqual(self.program.wait_for_exit(), 0)

    def test_a_poster_comes_from_the_film_database(self):
        self.serve()
        self.open()
        self.find_results()
        self.select_first()
        self.wait_for_request('/3/find/')
        wait_for(lambda: [line for line in self.requests() if line['target'].endswith('.jpg')], 'a picture is fetched')

    def test_without_a_key_no_server_is_asked_and_one_line_says_so(self):
        self.serve()
        self.open(key=False, films=False)
        self.search('paper lighthouse')
        self.tree.find('label', lambda name: 'Only the offline catalogue was searched.' in name)
        self.search('paper boat')
        self.tree.find('label', lambda name: name.startswith('Nothing found for “paper boat”'))
        self.wait_for_no('label', lambda name: 'Only the offline catalogue was searched.' in name)
        self.assertEqual(self.requests(), [])

    def test_a_language_that_the_service_does_not_know_is_said(self):
        self.serve()
        self.set(languageCode='mt')
        self.open()
        self.search('paper lighthouse')
        self.assertIn('The subtitle service has no subtitles in this language.', self.alert_text())
        self.assertEqual(self.requests('/api/v1/subtitles'), [])


class PaneTest(ServiceTest):
    def setUp(self):
        super().setUp()
        self.serve()

    def open_pane(self):
        self.screen.press('ctrl+comma')
        self.tree.find('frame', 'General')
        self.click(self.tree.find('check box', 'Services'))
        return self.tree.find('frame', 'Services')

    def type_into(self, pane, name, text):
        field = pane.find('text', name)
        self.click(field)
        self.wait_for_focus(field)
        self.screen.press('ctrl+a')
        self.screen.type(text)

    def wait_for_status(self, pane, sentence):
        wait_for(lambda: pane.find_all('label', lambda name: sentence in name),
                 lambda: f'the pane says "{sentence}"\n{pane.dump()}')

    def answer_question(self, button):
        question = self.tree.find('alert message')
        question.find('label', lambda name: name.startswith('The keyring of this computer does not take the key.'))
        self.click(question.find('push button', button))
        self.wait_for_no('alert message')

    def secrets(self):
        return os.path.join(self.home['XDG_CONFIG_HOME'], 'Quorvane', 'Plovendix.secrets')

    def test_a_key_is_used_at_once_and_kept_where_the_person_agrees(self):
        self.open(key=False, films=False)
        pane = self.open_pane()
        self.type_into(pane, 'API key', self.addresses['PLOVENDIX_SUBTITLE_API_KEY'])
        self.screen.press('Return')
        self.answer_question('Keep in a File')
        wait_for(lambda: os.path.exists(self.secrets()), 'the key is kept')
        self.assertTrue(is_private(self.secrets()))
        with open(self.settings, encoding='utf-8') as file:
            self.assertNotIn(self.addresses['PLOVENDIX_SUBTITLE_API_KEY'], file.read())
        self.click(pane.find('push button', 'Test Connection'))
        self.wait_for_status(pane, 'The subtitle service accepts the key.')
        self.screen.press('ctrl+w')
        self.wait_for_no('frame', 'Services')
        self.screen.activate(self.window)
        self.find_results()

    def test_what_the_person_does_not_want_kept_is_used_until_the_end(self):
        self.open(key=False, films=False)
        pane = self.open_pane()
        self.type_into(pane, 'API key', self.addresses['PLOVENDIX_SUBTITLE_API_KEY'])
        self.screen.press('Return')
        self.answer_question('Do Not Keep')
        self.wait_for_status(pane, 'it is kept only until the program ends')
        self.assertFalse(os.path.exists(self.secrets()))
        self.click(pane.find('push button', 'Test Connection'))
        self.wait_for_status(pane, 'The subtitle service accepts the key.')

    def test_a_login_is_tested_and_downloads_are_told(self):
        self.open(account=True)
        pane = self.open_pane()
        self.click(pane.find('push button', 'Test Connection'))
        self.wait_for_status(pane, 'accepts the key and the login. Downloads left today: 20 of 20.')
        self.wait_for_status(pane, 'The film database accepts its key.')
        password = pane.find('text', 'Password').text
        self.assertEqual(password, '', 'nobody reads it aloud')

    def test_a_wrong_login_is_tried_once(self):
        self.open(account=True, environment={'PLOVENDIX_SUBTITLE_PASSWORD': 'wrong'})
        pane = self.open_pane()
        for _ in range(2):
            self.click(pane.find('push button', 'Test Connection'))
            self.wait_for_status(pane, 'User name or password not accepted')
        self.assertEqual(len(self.requests('/api/v1/login')), 1)
        self.type_into(pane, 'User name', 'somebody')
        self.click(pane.find('push button', 'Test Connection'))
        wait_for(lambda: len(self.requests('/api/v1/login')) == 2, 'another login is tried')

    def test_every_control_has_a_name(self):
        self.open(key=False, films=False)
        pane = self.open_pane()
        nameless = [node.role for node in pane.descendants() if node.role in CONTROLS and not node.name.strip()]
        self.assertEqual(nameless, [])
        # On this platform a pop-up's name is its value; what it is for is said by its label.
        self.assertEqual([node.labels for node in pane.find_all('combo box')],
                         [['For the hard of hearing'], ['Foreign parts only'], ['Translated by machine']])

    def test_a_key_of_the_environment_cannot_be_changed(self):
        self.open()
        pane = self.open_pane()
        self.assertFalse(pane.find('text', 'API key').has('enabled'))


if __name__ == '__main__':
    unittest.main(verbosity=2)
