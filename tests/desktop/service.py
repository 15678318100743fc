"""What the tests of the network's services share: a stand-in for them on this machine, and its log."""
import json
import os
import stat

from program_test import BUILD, REAL, ProgramTest
from waiting import wait_for

STAND_IN = os.path.join('tests', 'plovendix-standin')
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
            self.service.stop()

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
