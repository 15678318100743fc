"""What the tests of the network's services share: a stand-in for them on this machine, and its log."""
import json
import os
import stat

from program_test import BUILD, REAL, ProgramTest
from waiting import wait_for

STAND_IN = os.path.join('tests', 'plovendix-standin')
MOST_IN_A_SECOND = 5
NOWHERE = 'https://nowhere.invalid/api/v1'


class ServiceTest(ProgramTest):
    """`self.serve(*behaviours)` starts the stand-in, `self.open()` the program that asks it."""

    def setUp(self):
        super().setUp()
        self.service = None
        self.log = os.path.join(self.home['HOME'], 'requests')
        self.addresses = {}

    def tearDown(self):
        super().tearDown()
        if self.service:
            self.end_service()
            self.assertEqual(self.misdeeds(), [])

    def end_service(self):
        """Ends the stand-in; a test that calls this has judged the log itself."""
        self.service.stop()
        self.service = None

    # The services

    def serve(self, *behaviours, drip=300):
        program = os.path.join(BUILD, STAND_IN)
        self.service = self.desktop.start([program, '--log', self.log, '--drip', str(drip), *behaviours], 'service')
        self.service.wait_for_line('ready')
        self.addresses = dict(line.split('=', 1) for line in self.service.lines() if '=' in line)

    def requests(self, path=''):
        """What the stand-in was asked whose address begins so, in order."""
        if not os.path.exists(self.log):
            return []
        with open(self.log, encoding='utf-8') as file:
            lines = [json.loads(line) for line in file.read().splitlines()]
        return [line for line in lines if line['target'].startswith(path)]

    def wait_for_request(self, path):
        wait_for(lambda: self.requests(path), lambda: f'{path} is asked for; asked for was '
                                                     f'{[line["target"] for line in self.requests()]}')

    def misdeeds(self):
        """What no client should ever do, read from the log."""
        found = []
        requests = self.requests()
        api = int(self.addresses['SubtitleServiceURL'].split(':')[2].split('/')[0])
        keyed = {line['port'] for line in self.requests('/api/v1/')}
        refused = set()
        for line in requests:
            headers = line['headers']
            if line['status'] in (301, 302, 307, 308):
                found.append(f'caused a redirect: {line["target"]}')
            if not headers.get('user-agent', '').startswith('Plovendix v') or not headers.get('accept'):
                found.append(f'without its headers: {line["target"]}')
            is_film = line['port'] == api and line['target'].startswith('/3/')
            if 'api-key' in headers and (is_film or line['port'] not in keyed):
                found.append(f'a key at a foreign host: {line["target"]}')
            if 'authorization' in headers and line['port'] not in keyed:
                found.append(f'a token at a foreign host: {line["target"]}')
            if line['target'].startswith('/api/v1/') and not headers.get('api-key'):
                found.append(f'without the key: {line["target"]}')
            if line['target'].endswith('/login'):
                if line['body'] in refused:
                    found.append('a refused login was repeated')
                if line['status'] in (400, 401):
                    refused.add(line['body'])
        for kind in ('/api/v1/', '/3/'):
            times = [line['milliseconds'] for line in self.requests(kind)]
            crowd = max((sum(start <= time < start + 1000 for time in times) for start in times), default=0)
            if crowd > MOST_IN_A_SECOND:
                found.append(f'{crowd} requests in a second')
        return found

    # The program

    def open(self, *arguments, key=True, account=False, films=True, **options):
        """Starts the program on an own copy of nothing but these settings and secrets."""
        if self.addresses:
            self.set(**{name: self.addresses[name] for name in ('SubtitleServiceURL', 'MetadataServiceURL')})
        environment = {**options.pop('environment', {})}
        known = {'PLOVENDIX_SUBTITLE_API_KEY': key, 'PLOVENDIX_METADATA_API_KEY': films,
                 'PLOVENDIX_SUBTITLE_PASSWORD': account}
        for name, given in known.items():
            if given and name not in environment:
                environment[name] = self.addresses[name]
        if account:
            self.set(SubtitleServiceUser=self.addresses['SubtitleServiceUser'])
        self.launch(*arguments, program=REAL, environment=environment, **options)

    def find_results(self):
        self.search('paper lighthouse')
        wait_for(self.rows, lambda: f'results are shown\n{self.tree.dump()}')

    def alert_text(self):
        """What the error alert says."""
        alert = self.tree.find('alert message')
        return ' '.join(label.name for label in alert.find_all('label') if label.name)

    def dismiss_alert(self):
        self.screen.press('Return')
        self.wait_for_no('alert message')

    def assert_usable(self):
        """The window answers: Escape twice clears it, whatever was there."""
        self.wait_for_no(None, 'Searching')
        self.screen.press('Escape')
        self.tree.find('label', 'Drop a video here')
        self.assertTrue(self.program.runs())


def is_private(path):
    return stat.S_IMODE(os.stat(path).st_mode) == 0o600

