"""Companion applications: they ask through the scheme, the button names them, and they are told where the file lies."""
import os
import unittest
import urllib.parse

from installed import InstalledTest, request
from waiting import wait_for


class CompanionTest(InstalledTest):
    def ask(self, **items):
        """Starts the program with a companion's request and selects the first result."""
        self.launch_installed(request(self.sample(), **items))
        self.tree.find('list', 'Results')
        row = self.tree.find_all('list item')[0]
        self.click(row)
        wait_for(lambda: row.has('selected'), 'the row is selected')

    def delivered(self):
        """The files in the program's folder for companions."""
        folder = os.path.join(self.videos, 'Plovendix')
        return sorted(os.listdir(folder)) if os.path.isdir(folder) else []

    def test_the_companion_gets_the_file_and_exactly_the_reply(self):
        received = self.register_handler('tessaly3', 'com.quorvane.Tessaly')
        self.ask(docid='4 2&x=%+é', sender='tessaly3')
        self.click(self.tree.find('push button', 'Send to Tessaly'))
        wait_for(lambda: os.path.exists(received), 'the reply arrives')
        with open(received, encoding='utf-8') as file:
            replies = file.read().splitlines()
        name, = self.delivered()
        path = os.path.join(self.videos, 'Plovendix', name)
        self.assertTrue(name.endswith('.eng.srt'), name)
        self.assertGreater(os.path.getsize(path), 0)
        self.assertEqual(len(replies), 1)
        reply = urllib.parse.urlsplit(replies[0])
        self.assertEqual((reply.scheme, reply.netloc, reply.path), ('tessaly3', 'plovendix-file', ''))
        items = [item.split('=') for item in reply.query.split('&')]
        self.assertEqual([(name, urllib.parse.unquote(value)) for name, value in items],
                         [('filepath', path), ('docid', '4 2&x=%+é')])
        self.tree.find('label', 'Sent to Tessaly')

    def test_the_drop_area_names_what_is_installed(self):
        self.register_handler('glimmet', 'com.quorvane.Glimmet')
        self.register_handler('tessaly3', 'com.quorvane.Tessaly')
        self.launch_installed()
        self.tree.find('label', 'or type a title above\nWorks with Tessaly and Glimmet')


if __name__ == '__main__':
    unittest.main(verbosity=2)
