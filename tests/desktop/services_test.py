"""The network's services in the program: keys, login, downloads, and the pane where they are set."""
import os
import unittest

from names_test import CONTROLS
from service import ServiceTest, is_private
from waiting import wait_for

FOUND_ON_THE_NETWORK = 3


class NetworkTest(ServiceTest):
    def test_a_search_goes_to_the_network_with_the_key_from_the_environment(self):
        self.serve()
        self.open()
        self.find_results()
        self.wait_for_title(f'Plovendix ({FOUND_ON_THE_NETWORK} subtitles found)')
        self.wait_for_request('/api/v1/infos/languages')
        self.assertEqual(sorted(line['target'] for line in self.requests()),
                         ['/api/v1/infos/languages', '/api/v1/subtitles?languages=en&query=paper+lighthouse'])

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


class PaneTest(ServiceTest):
    def setUp(self):
        super().setUp()
        self.serve()

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
        pane = self.open_preferences('Services')
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

    def test_a_login_is_tested_and_downloads_are_told(self):
        self.open(account=True)
        pane = self.open_preferences('Services')
        self.click(pane.find('push button', 'Test Connection'))
        self.wait_for_status(pane, 'accepts the key and the login. Downloads left today: 20 of 20.')
        self.wait_for_status(pane, 'The film database accepts its key.')
        password = pane.find('text', 'Password').text
        self.assertEqual(password, '', 'nobody reads it aloud')

    def test_every_control_has_a_name(self):
        self.open(key=False, films=False)
        pane = self.open_preferences('Services')
        nameless = [node.role for node in pane.descendants() if node.role in CONTROLS and not node.name.strip()]
        self.assertEqual(nameless, [])
        # On this platform a pop-up's name is its value; what it is for is said by its label.
        self.assertEqual([node.labels for node in pane.find_all('combo box')],
                         [['For the hard of hearing'], ['Foreign parts only'], ['Translated by machine']])


if __name__ == '__main__':
    unittest.main(verbosity=2)
