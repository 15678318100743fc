"""The maker's servers on this machine, and a copy of the program that takes updates from them."""
import http.server
import json
import os
import plistlib
import shutil
import subprocess
import threading

NOTES = '''<p>Searching is quicker, and more of what you drop is understood.</p>
<ul><li>Subtitles in Icelandic and Welsh</li><li>Names of series with the year in brackets</li>
<li>The list keeps its selection when a search is repeated</li></ul>'''


class Maker:
    """Use with "with". `feed` and `status` are what the servers answer with; `reports` is what was posted."""

    def __init__(self, build, folder):
        self._build = build
        self._folder = os.path.join(folder, 'maker')
        self._key = os.path.join(self._folder, 'key')
        self._server = None
        self.program = os.path.join(self._folder, 'plovendix')
        self.feed = ''
        self.status = 200
        self.asked = []
        self.reports = []

    def __enter__(self):
        os.makedirs(self._folder, exist_ok=True)
        self._copy_program(self._sign('new-key', self._key).strip())
        self.feed = self._sign('feed', self._key)
        self._server = http.server.ThreadingHTTPServer(('127.0.0.1', 0), self._handler())
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_reason):
        self._server.shutdown()
        self._server.server_close()
        shutil.rmtree(self._folder, ignore_errors=True)

    def _sign(self, *words):
        tool = os.path.join(self._build, 'plovendix-sign-update')
        return subprocess.run([tool, *words], capture_output=True, text=True, check=True).stdout

    def _copy_program(self, public_key):
        """The program as built, but for the key; its resources are those beside it."""
        shutil.copy(os.path.join(self._build, 'plovendix'), self.program)
        built, own = os.path.join(self._build, 'resources'), os.path.join(self._folder, 'resources')
        os.mkdir(own)
        for name in os.listdir(built):
            if name != 'Info.plist':
                os.symlink(os.path.join(built, name), os.path.join(own, name))
        with open(os.path.join(built, 'Info.plist'), 'rb') as file:
            information = plistlib.load(file)
        information['SUPublicEDKey'] = public_key
        with open(os.path.join(own, 'Info.plist'), 'wb') as file:
            plistlib.dump(information, file)

    def _handler(self):
        maker = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):  # pylint: disable=invalid-name
                maker.asked.append(self.path)
                self._answer(maker.feed.encode())

            def do_POST(self):  # pylint: disable=invalid-name
                body = self.rfile.read(int(self.headers['Content-Length']))
                maker.reports.append(json.loads(body))
                self._answer(b'{}')

            def _answer(self, body):
                self.send_response(maker.status)
                self.send_header('Content-Length', str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_arguments):  # pylint: disable=arguments-differ
                pass
        return Handler

    def address(self, path):
        return f'http://127.0.0.1:{self._server.server_port}/{path}'

    def settings(self):
        """What points a person's settings at these servers. Checks come only when they are asked for."""
        return {'UpdateFeedURL': self.address('appcast.xml'), 'FeedbackURL': self.address('reports'),
                'SUEnableAutomaticChecks': 'false'}

    def offer(self, version, link='https://www.quorvane.example/plovendix', signed=True):
        """Puts a version into the feed."""
        notes = os.path.join(self._folder, 'notes')
        with open(notes, 'w', encoding='utf-8') as file:
            file.write(NOTES)
        item = os.path.join(self._folder, 'item')
        with open(item, 'w', encoding='utf-8') as file:
            file.write(self._sign('item', self._key, version, link, notes))
        feed = self._sign('feed', self._key, item)
        self.feed = feed if signed else feed.replace('signature>', 'no-signature>')
