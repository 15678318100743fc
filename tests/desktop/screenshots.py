"""Pictures of the program's main states in light and dark at scale 1 and 2: screenshots.py [BUILD]

Written to build/screenshots/, to be looked at beside each other. BUILD is the build folder, build/dev without one.
Each picture is taken by a method whose name begins with "shot_", of a program just started in an empty home.
"""
import os
import sys
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
os.environ['PLOVENDIX_BUILD'] = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, 'build', 'dev'))

from folder_test import FolderTest, write_subtitle  # noqa: E402  after the build folder is known
from program_test import REAL, SCRIPTED  # noqa: E402
from service import NOWHERE, ServiceTest  # noqa: E402
from updates_test import MakerTest  # noqa: E402
from waiting import remains, wait_for  # noqa: E402

TARGET = os.path.join(ROOT, 'build', 'screenshots')
SCHEMES = {'light': (2, '#d3dae1'), 'dark': (1, '#17181b')}
SCALES = (1, 2)
MARGIN_POINTS = 28
SETTLE_SECONDS = 0.8  # fades and the sliding panel have ended


class Studio(ServiceTest, FolderTest):
    def setUp(self):
        super().setUp()
        self.home['QT_SCALE_FACTOR'] = str(self.scale)

    def start(self, *arguments, program=REAL, **settings):
        if settings:
            self.set(**settings)
        self.launch(*arguments, program=program)

    def start_with_panel(self, **settings):
        self.start(self.sample(), **settings)
        self.select_first()

    def start_offline(self):
        self.home['PLOVENDIX_SUBTITLE_API_KEY'] = 'key'
        self.start(SubtitleServiceURL=NOWHERE)

    def download_online(self, *behaviours, account=False, **options):
        self.serve(*behaviours)
        self.open(account=account, **options)
        self.find_results()
        self.select_first()
        self.screen.press('ctrl+s')

    def take(self, state, window=None):
        remains(self.program.runs, 'the program runs', SETTLE_SECONDS)
        window = window or self.window
        x, y, width, height = self.screen.geometry(window)
        extents = self.screen.properties(window, '_GTK_FRAME_EXTENTS').get('_GTK_FRAME_EXTENTS', '0')
        spare = MARGIN_POINTS * self.scale - int(extents.split(',')[0])
        part = self.screen.picture().cut(x - spare, y - spare, width + 2 * spare, height + 2 * spare)
        part.save(os.path.join(TARGET, f'{state}-{self.name}@{self.scale}x.png'))

    def take_titled(self, state, title):
        self.take(state, self.screen.window(f'^{title}$'))

    def take_alert(self, state):
        self.tree.find('alert message')
        self.take(state)

    def take_sentence(self, state, part):
        self.tree.find('label', lambda name: part in name)
        self.take(state)

    def shot_the_main_window(self):
        self.start()
        self.take('idle')
        source, grip = self.desktop.drag_source('text/uri-list', 'file:///nowhere/Film.mkv\r\n')
        self.addCleanup(source.stop)
        x, y, width, height = self.screen.geometry(self.window)
        inside = (x + width // 2, y + height * 3 // 4)
        self.desktop.carry(source, grip, inside)
        self.screen.hover(inside, lambda: 'draggingEntered' in self.program.lines(), 'the program sees the drag')
        self.take('dragging')
        self.screen.button_up()

    def shot_menu(self):
        self.start()
        self.open_menu()
        self.take('menu')

    def shot_languages(self):
        self.start(languageCode='ab')  # the first below the separator
        self.click(self.tree.find('combo box', 'Abkhazian'))
        wait_for(lambda: len(self.screen.windows_of(self.program.pid)) > 1, 'the languages are shown')
        self.take('languages')

    def shot_results_to_saved(self):
        self.start(self.sample())
        wait_for(self.rows, 'the sample is found')
        self.take('results')
        self.select_first()
        self.take('panel')
        self.screen.press('ctrl+s')
        self.tree.find('dialog', 'Save')
        self.take('save-sheet')
        self.screen.press('Return')
        self.tree.find('push button', 'Show in folder')
        self.take('saved')

    def shot_nothing_found(self):
        self.start(program=SCRIPTED)
        self.search('nothing')
        self.take_sentence('nothing-found', 'Nothing found')

    def shot_alert(self):
        self.start(program=SCRIPTED)
        self.search('refuse')
        self.take_alert('alert')

    def shot_general(self):
        self.start()
        self.open_preferences()
        self.take_titled('general', 'General')

    def shot_updates(self):
        self.start(SUEnableAutomaticChecks='true', SUScheduledCheckInterval=86400, SULastCheckTime='2026-11-20T18:04:00Z')
        self.open_preferences('Updates')
        self.take_titled('updates', 'Updates')

    def shot_services(self):
        self.serve()
        self.open(account=True)
        pane = self.open_preferences('Services')
        self.click(pane.find('push button', 'Test Connection'))
        self.wait_for_sentence(pane, 'The subtitle service accepts')
        self.take_titled('services', 'Services')

    def shot_about(self):
        self.start()
        self.choose('Up', 'Up')
        self.tree.find('frame', 'About Plovendix')
        self.take_titled('about', 'About Plovendix')

    def shot_donation(self):
        self.start_with_panel(donationDeliveries=5)
        self.screen.press('ctrl+s')
        self.tree.find('frame', 'Support Plovendix')
        self.take_titled('donation', 'Support Plovendix')

    def shot_folder_running(self):
        self.write_many()
        with self.another_writer():
            self.start_held_up()
            self.take_titled('folder-running', 'Services')

    def shot_folder_added(self):
        for name in ('Tin.Orchard.2019.en.srt', 'Quiet.Engine.2019.en.srt'):
            write_subtitle(self.folder, name)
        write_subtitle(self.folder, 'page.srt', cue='<html>Not found</html>')
        self.start()
        pane = self.open_pane()
        self.add_folder(pane)
        self.wait_for_sentence(pane, 'Subtitles added: ')
        self.take_titled('folder-added', 'Services')

    def shot_offline_hint(self):
        self.start()
        self.search('nothing of that name')
        self.take_sentence('offline-hint', 'offline catalogue')

    def shot_no_network(self):
        self.start_offline()
        self.search('paper lighthouse')
        self.take_alert('no-network')

    def shot_local_rows(self):
        self.start_offline()
        self.search('harbour lights')
        self.take_sentence('local-rows', 'Offline: showing the local catalogue')

    def shot_service_failures(self):
        for state, behaviour in (('service-down', 'down'), ('key-refused', 'unknown-key')):
            self.serve(behaviour)
            self.open()
            self.search('paper lighthouse')
            self.take_alert(state)
            self.program.stop()
            self.service.stop()

    def shot_login_refused(self):
        self.download_online(account=True, environment={'PLOVENDIX_SUBTITLE_PASSWORD': 'wrong'})
        self.take_alert('login-refused')

    def shot_limit_reached(self):
        self.download_online('quota-used')
        self.take_alert('limit-reached')

    def shot_downloads_left(self):
        self.download_online(account=True)
        self.tree.find('dialog', 'Save')
        self.screen.press('Escape')
        self.take_sentence('downloads-left', 'Downloads left')


class MakerStudio(Studio, MakerTest):
    start = MakerTest.start

    def shot_update(self):
        for state, version, is_signed, sentence in (('update-none', '1.0', True, 'You are up to date'),
                                                    ('update-found', '1.1', True, 'Plovendix 1.1 is available'),
                                                    ('update-failed', '1.1', False, 'The check for updates failed')):
            self.maker.offer(version, signed=is_signed)
            self.start()
            window = self.open_updates()
            self.said(sentence)
            self.take(state, window)
            self.program.stop()

    def shot_feedback(self):
        self.maker.status = 503
        self.start()
        window = self.open_feedback()
        self.screen.type('The list is lovely. Could it be sorted by date?')
        self.take('feedback', window)
        self.screen.press('ctrl+Return')
        self.tree.find('label', lambda name: 'The report is kept in' in name)
        self.take('feedback-kept', window)


def main():
    os.makedirs(TARGET, exist_ok=True)
    loader = unittest.TestLoader()
    loader.testMethodPrefix = 'shot_'
    taken = unittest.TestSuite()
    for name, (scheme, ground) in SCHEMES.items():
        for scale in SCALES:
            options = {'size': (1300 * scale, 1000 * scale), 'ground': ground}
            for kind in (Studio, MakerStudio):
                studio = type(kind.__name__, (kind,), {'name': name, 'scheme': scheme, 'scale': scale, 'options': options})
                names = [shot for shot in loader.getTestCaseNames(kind) if shot in vars(kind)]
                taken.addTests(studio(shot) for shot in names)
    result = unittest.TextTestRunner(verbosity=1).run(taken)
    print(f'{len(os.listdir(TARGET))} pictures in {TARGET}')
    return 0 if result.wasSuccessful() else 1


if __name__ == '__main__':
    sys.exit(main())
