"""mpv asks for subtitles of the file it plays and gets them: the script, the program, the delivery and the handler."""
import glob
import json
import os
import socket
import unittest

from installed import InstalledTest
from waiting import wait_for

SOCKETS = os.path.join('plovendix-mpv', '*.socket')


class Player:
    """A running mpv by its control socket."""

    def __init__(self, path):
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(10)
        # The socket's file is there a moment before anybody listens.
        wait_for(lambda: self._socket.connect_ex(path) == 0, 'mpv listens at its socket')
        self._answers = self._socket.makefile('rb')
        self._number = 0

    def close(self):
        self._answers.close()
        self._socket.close()

    def command(self, *words):
        self._number += 1
        self._socket.sendall(json.dumps({'command': words, 'request_id': self._number}).encode() + b'\n')
        while True:
            answer = json.loads(self._answers.readline())
            if answer.get('request_id') == self._number:
                return answer

    def read(self, name):
        return self.command('get_property', name).get('data')


class MpvTest(InstalledTest):
    def play(self, *arguments, cwd=None):
        script = os.path.join(self.prefix, 'share/plovendix/companions/mpv/plovendix.lua')
        self.player = self.desktop.start(
            ['mpv', '--no-config', '--vo=null', '--ao=null', '--pause', '--idle', f'--script={script}', *arguments], 'mpv',
            environment=self.home, cwd=cwd)
        self.addCleanup(self.player.stop)
        runtime = self.home['XDG_RUNTIME_DIR']
        path, = wait_for(lambda: glob.glob(os.path.join(runtime, SOCKETS)), 'mpv has its socket')
        player = Player(path)
        self.addCleanup(player.close)
        return player

    def press_key(self, player):
        wait_for(lambda: player.command('keypress', 'Alt+s')['error'] == 'success', 'the key is pressed')

    def external_subtitles(self, player):
        return [track for track in player.read('track-list') or [] if track['type'] == 'sub' and track.get('external')]

    def test_the_subtitle_comes_back_into_the_player(self):
        video = self.sample()
        player = self.play(os.path.basename(video), cwd=self.videos)
        wait_for(lambda: player.read('track-list'), 'the clip is loaded')
        self.assertEqual(self.external_subtitles(player), [])
        self.press_key(player)
        self.adopt()
        self.wait_for_field(os.path.basename(video))
        self.tree.find('list', 'Results')
        row = self.tree.find_all('list item')[0]
        self.click(row)
        wait_for(lambda: row.has('selected'), 'the row is selected')
        self.click(self.tree.find('push button', 'Send to mpv'))
        track, = wait_for(lambda: self.external_subtitles(player), 'the subtitle is added')
        folder = os.path.join(self.videos, 'Plovendix')
        self.assertEqual(track['external-filename'], os.path.join(folder, os.listdir(folder)[0]))
        self.assertTrue(track['selected'])

    def test_the_player_leaves_nothing_behind(self):
        player = self.play()
        player.command('quit')
        self.player.wait_for_exit()
        self.assertEqual(os.listdir(os.path.join(self.home['XDG_RUNTIME_DIR'], 'plovendix-mpv')), [])


if __name__ == '__main__':
    unittest.main(verbosity=2)
