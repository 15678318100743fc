"""The handler of mpv's reply scheme: what it loads, and what it refuses, with a stand-in for the player."""
import json
import os
import socket
import subprocess
import sys
import tempfile
import threading
import unittest
import urllib.parse

HANDLER = os.path.join(os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__)))), 'companions', 'mpv',
                       'plovendix-mpv-reply')
DOCUMENT = '12-34'


class StandIn(threading.Thread):
    """Takes connections as mpv does and keeps the commands."""

    def __init__(self, path, error='success'):
        super().__init__(daemon=True)
        self.commands = []
        self._error = error
        self._server = socket.socket(socket.AF_UNIX)
        self._server.bind(path)
        self._server.listen()

    def run(self):
        while True:
            try:
                connection, _ = self._server.accept()
            except OSError:
                return
            with connection, connection.makefile('rwb') as stream:
                for line in stream:
                    request = json.loads(line.decode('utf-8', 'surrogateescape'))
                    self.commands.append(request['command'])
                    stream.write(b'{"event":"idle"}\n')
                    stream.write(json.dumps({'error': self._error, 'request_id': request['request_id']}).encode() + b'\n')
                    stream.flush()

    def close(self):
        self._server.shutdown(socket.SHUT_RDWR)
        self._server.close()
        self.join()


class ReplyTest(unittest.TestCase):
    def setUp(self):
        self.runtime = self.enterContext(tempfile.TemporaryDirectory())
        self.notes = os.path.join(self.runtime, 'plovendix-mpv')
        os.makedirs(self.notes)
        self.folder = os.path.join(self.runtime, 'Videos', 'Plovendix')
        os.makedirs(self.folder)
        self.player = self.stand_in('success')

    def stand_in(self, error):
        path = os.path.join(self.notes, f'{error}.socket')
        player = StandIn(path, error)
        player.start()
        self.addCleanup(player.close)
        with open(os.path.join(self.notes, DOCUMENT), 'w', encoding='utf-8') as note:
            note.write(path)
        return player

    def subtitle(self, name, folder=None):
        path = os.path.join(folder or self.folder, name)
        with open(os.fsencode(path), 'wb') as file:
            file.write(b'1')
        return path

    def handle(self, *arguments):
        return subprocess.run([sys.executable, '-B', HANDLER, *arguments], env={'XDG_RUNTIME_DIR': self.runtime},
                              capture_output=True, text=True, check=False)

    def reply(self, path, document=DOCUMENT):
        return ('plovendix-mpv://plovendix-file?filepath=' + urllib.parse.quote(os.fsencode(path)) + '&docid=' + document)

    def assert_refused(self, url, reason):
        done = self.handle(url)
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertIn(reason, done.stderr)
        self.assertEqual(self.player.commands, [])

    def test_the_subtitle_is_added_and_selected(self):
        for name in ('A b+c%&=é.eng.srt', 'a.ASS', os.fsdecode(b'caf\xe9.srt')):
            with self.subTest(name=ascii(name)):
                path = self.subtitle(name)
                self.player.commands.clear()
                done = self.handle(self.reply(path))
                self.assertEqual((done.returncode, done.stderr), (0, ''))
                self.assertEqual(self.player.commands[0], ['sub-add', path, 'select'])

    def test_what_is_no_delivery_is_refused(self):
        outside = os.path.join(self.runtime, 'Other')
        os.makedirs(outside)
        secret = self.subtitle('secret.srt', outside)
        link = os.path.join(self.folder, 'link.srt')
        os.symlink(secret, link)
        for path, reason in ((secret, 'none that'), (link, 'no such file'), (self.folder + '/none.srt', 'no such file'),
                             (self.folder + '/../Plovendix/../../Other/secret.srt', 'plain absolute'),
                             (self.subtitle('playlist.m3u'), 'none that'), ('Plovendix/a.srt', 'plain absolute'),
                             ('', 'plain absolute'), ('edl://Plovendix/a.srt', 'plain absolute'),
                             (self.folder + '/a\0.srt', 'plain absolute'), (self.folder, 'none that')):
            with self.subTest(path=path):
                self.assert_refused(self.reply(path), reason)

    def test_only_a_player_that_asked_is_spoken_to(self):
        path = self.subtitle('a.srt')
        for document in ('', '1-1', '../12-34', 'success.socket', '12-34%0A', '/etc/passwd'):
            with self.subTest(document=document):
                self.assert_refused(self.reply(path, document), 'player')

    def test_other_urls_are_refused(self):
        query = self.reply(self.subtitle('a.srt')).partition('?')[2]
        for start in ('plovendix://plovendix-file?', 'plovendix-mpv://other?', 'plovendix-mpv:?', '', 'plovendix-mpv://[?'):
            with self.subTest(start=start):
                self.assert_refused(start + query, '')

    def test_the_first_item_of_a_name_counts(self):
        path = self.subtitle('a.srt')
        done = self.handle(self.reply(path) + '&filepath=/etc/passwd&docid=9-9&docid')
        self.assertEqual((done.returncode, done.stderr), (0, ''))
        self.assertEqual(self.player.commands[0][1], path)

    def test_a_player_that_refuses_or_is_gone_is_said(self):
        path = self.subtitle('a.srt')
        refusing = self.stand_in('error running command')
        done = self.handle(self.reply(path))
        self.assertEqual(done.returncode, 1)
        self.assertIn('error running command', done.stderr)
        self.assertEqual(len(refusing.commands), 1)
        with open(os.path.join(self.notes, DOCUMENT), 'w', encoding='utf-8') as note:
            note.write(os.path.join(self.notes, 'nobody.socket'))
        self.assertEqual(self.handle(self.reply(path)).returncode, 1)

    def test_without_an_address_it_says_how_it_is_used(self):
        done = self.handle()
        self.assertEqual(done.returncode, 2)
        self.assertIn('usage:', done.stderr)


if __name__ == '__main__':
    unittest.main()
