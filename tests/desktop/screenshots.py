"""Pictures of the program's main states in light and dark at scale 1 and 2: screenshots.py [BUILD]

Written to build/screenshots/, for people to look at beside each other. BUILD is the build folder, build/dev without one.
"""
import contextlib
import os
import pathlib
import shutil
import sqlite3
import sys

from desktop import Desktop
from folder_test import write_subtitle
from maker import STEPS_DOWN, Maker
from service import NOWHERE, STAND_IN
from waiting import remains, wait_for

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
TARGET = os.path.join(ROOT, 'build', 'screenshots')
SCHEMES = {'light': 2, 'dark': 1}
GROUNDS = {'light': '#d3dae1', 'dark': '#17181b'}
SCALES = (1, 2)
MARGIN_POINTS = 28
SETTLE_SECONDS = 0.8  # fades and the sliding panel have ended


class Studio:
    """One desktop in one scheme and scale; every picture is of a program just started in an empty home."""

    def __init__(self, desktop, build, name, scale):
        self._desktop = desktop
        self._screen = desktop.screen
        self._build = build
        self._name = name
        self._scale = scale
        self._program = self._window = self._tree = self._service = None

    def idle(self):
        self._start()
        self._take('idle')

    def dragging(self):
        self._start()
        source, grip = self._desktop.drag_source('text/uri-list', 'file:///nowhere/Film.mkv\r\n')
        x, y, width, height = self._screen.geometry(self._window)
        inside = (x + width // 2, y + height * 3 // 4)
        self._desktop.carry(source, grip, inside)
        self._screen.hover(inside, lambda: 'draggingEntered' in self._program.lines(), 'the program sees the drag')
        self._take('dragging')
        self._screen.button_up()
        source.stop()

    def results(self):
        self._start(self._sample())
        self._wait_for_rows()
        self._take('results')

    def panel(self):
        self._start(self._sample())
        self._select_first()
        self._take('panel')

    def sheet(self):
        self._start(self._sample())
        self._select_first()
        self._screen.press('ctrl+s')
        self._tree.find('dialog', 'Save')
        self._take('save-sheet')

    def saved(self):
        self._start(self._sample())
        self._select_first()
        self._screen.press('ctrl+s')
        self._tree.find('dialog', 'Save')
        self._screen.press('Return')
        self._tree.find('push button', 'Show in folder')
        self._take('saved')

    def nothing_found(self):
        self._start(program='plovendix-scripted')
        self._type('nothing')
        self._tree.find('label', lambda name: name.startswith('Nothing found'))
        self._take('nothing-found')

    def alert(self):
        self._start(program='plovendix-scripted')
        self._type('refuse')
        self._tree.find('alert message')
        self._take('alert')

    def services(self):
        addresses = self._serve()
        self._start_online(addresses, account=True)
        self._screen.press('ctrl+comma')
        pane = self._tree.find('frame', 'General')
        self._click(pane.find('check box', 'Services'))
        pane = self._tree.find('frame', 'Services')
        self._click(pane.find('push button', 'Test Connection'))
        pane.find('label', lambda name: name.startswith('The subtitle service accepts'))
        self._take('services', self._screen.window('^Services$'))

    def folder_running(self):
        folder = self._subtitles()
        path = os.path.join(self._start_with_folder(folder), 'Plovendix', 'catalogue.sqlite')
        for number in range(340):
            write_subtitle(folder, f'Quiet.Engine.S01E{number:03}.1080p.WEB-DL.en.srt', str(number))
        with contextlib.closing(sqlite3.connect(path, isolation_level=None)) as other:
            other.execute('BEGIN IMMEDIATE')  # keeps the import from its end
            self._add_folder(folder).find('label', lambda name: ' files, ' in name)
            self._take('folder-running', self._screen.window('^Services$'))

    def folder_added(self):
        folder = self._subtitles()
        self._start_with_folder(folder)
        write_subtitle(folder, 'Quiet.Engine.2019.en.srt')
        write_subtitle(folder, 'page.srt', cue='<html>Not found</html>')
        self._add_folder(folder).find('label', lambda name: name.startswith('Subtitles added: '))
        self._take('folder-added', self._screen.window('^Services$'))

    def offline_hint(self):
        self._start()
        self._type('nothing of that name')
        self._tree.find('label', lambda name: 'offline catalogue' in name)
        self._take('offline-hint')

    def no_network(self):
        self._start(settings={'SubtitleServiceURL': NOWHERE}, environment={'PLOVENDIX_SUBTITLE_API_KEY': 'key'})
        self._type('paper lighthouse')
        self._take_alert('no-network')

    def local_rows(self):
        self._start(settings={'SubtitleServiceURL': NOWHERE}, environment={'PLOVENDIX_SUBTITLE_API_KEY': 'key'})
        self._type('harbour lights')
        self._tree.find('label', 'Offline: showing the local catalogue')
        self._take('local-rows')

    def service_down(self):
        self._start_online(self._serve('down'))
        self._type('paper lighthouse')
        self._take_alert('service-down')

    def key_refused(self):
        self._start_online(self._serve('unknown-key'))
        self._type('paper lighthouse')
        self._take_alert('key-refused')

    def login_refused(self):
        self._start_online({**self._serve(), 'PLOVENDIX_SUBTITLE_PASSWORD': 'wrong'}, account=True)
        self._download_online()
        self._take_alert('login-refused')

    def limit_reached(self):
        self._start_online(self._serve('quota-used'))
        self._download_online()
        self._take_alert('limit-reached')

    def downloads_left(self):
        self._start_online(self._serve(), account=True)
        self._download_online()
        self._tree.find('dialog', 'Save')
        self._screen.press('Escape')
        self._tree.find('label', lambda name: name.startswith('Downloads left'))
        self._take('downloads-left')

    def general(self):
        self._start()
        self._screen.press('ctrl+comma')
        self._tree.find('frame', 'General')
        self._take('general', self._screen.window('^General$'))

    def updates(self):
        self._start(settings={'SUEnableAutomaticChecks': 'true', 'SUScheduledCheckInterval': 86400,
                              'SULastCheckTime': '2026-11-20T18:04:00Z'})
        self._screen.press('ctrl+comma')
        self._click(self._tree.find('frame', 'General').find('check box', 'Updates'))
        self._tree.find('frame', 'Updates')
        self._take('updates', self._screen.window('^Updates$'))

    def languages(self):
        self._start(settings={'languageCode': 'ab'})  # the first below the separator
        self._click(self._tree.find('combo box', 'Abkhazian'))
        wait_for(lambda: len(self._screen.windows_of(self._program.pid)) > 1, 'the languages are shown')
        self._take('languages')

    def about(self):
        self._start()
        self._click(self._tree.find('button menu', 'Main menu'))
        wait_for(lambda: len(self._screen.windows_of(self._program.pid)) > 1, 'the menu is shown')
        self._screen.press('Up', 'Up', 'Return')  # the last entry but one
        self._tree.find('frame', 'About Plovendix')
        self._take('about', self._screen.window('^About Plovendix$'))

    def donation(self):
        self._start(self._sample(), settings={'donationDeliveries': 5})
        self._select_first()
        self._screen.press('ctrl+s')
        self._tree.find('frame', 'Support Plovendix')
        self._take('donation', self._screen.window('^Support Plovendix$'))

    def menu(self):
        self._start()
        self._click(self._tree.find('button menu', 'Main menu'))
        wait_for(lambda: len(self._screen.windows_of(self._program.pid)) > 1, 'the menu is shown')
        self._take('menu')

    def update_found(self):
        with Maker(self._build, self._desktop.folder) as maker:
            maker.offer('1.1')
            self._start_at(maker, 'Check for Updates…', 'Software Update')
            self._tree.find('push button', 'Get the Update')
            self._take('update-found')

    def up_to_date(self):
        with Maker(self._build, self._desktop.folder) as maker:
            self._start_at(maker, 'Check for Updates…', 'Software Update')
            self._tree.find('label', 'You are up to date')
            self._take('update-none')

    def update_refused(self):
        with Maker(self._build, self._desktop.folder) as maker:
            maker.offer('1.1', signed=False)
            self._start_at(maker, 'Check for Updates…', 'Software Update')
            self._tree.find('label', 'The check for updates failed')
            self._take('update-failed')

    def feedback(self):
        with Maker(self._build, self._desktop.folder) as maker:
            self._start_at(maker, 'Send Feedback…', 'Send Feedback')
            self._screen.type('The list is lovely. Could it be sorted by date?')
            self._take('feedback')

    def feedback_kept(self):
        with Maker(self._build, self._desktop.folder) as maker:
            maker.status = 503
            self._start_at(maker, 'Send Feedback…', 'Send Feedback')
            self._screen.type('The list is lovely. Could it be sorted by date?')
            self._screen.press('ctrl+Return')
            self._tree.find('label', lambda name: 'The report is kept in' in name)
            self._take('feedback-kept')

    def _serve(self, *behaviours):
        """Starts a stand-in for the network's services; what it says of itself."""
        self._service = self._desktop.start([os.path.join(self._build, STAND_IN), *behaviours], 'service')
        self._service.wait_for_line('ready')
        return dict(line.split('=', 1) for line in self._service.lines() if '=' in line)

    def _start_online(self, addresses, account=False):
        names = ['SubtitleServiceURL', 'MetadataServiceURL', *(['SubtitleServiceUser'] if account else [])]
        self._start(settings={name: addresses[name] for name in names},
                    environment={name: value for name, value in addresses.items() if name.startswith('PLOVENDIX_')})

    def _subtitles(self):
        folder = os.path.join(self._desktop.folder, 'Subtitles')
        shutil.rmtree(folder, ignore_errors=True)
        write_subtitle(folder, 'Tin.Orchard.2019.en.srt')
        return folder

    def _start_with_folder(self, folder):
        """Starts the program and adds the folder, so that there is a catalogue; where the person's data is kept."""
        home = self._start()
        self._add_folder(folder).find('label', lambda name: name.startswith('Subtitles added: 1'))
        self._screen.press('ctrl+w')
        wait_for(lambda: not self._tree.find_all('frame', 'Services'), 'the preferences are closed')
        self._screen.activate(self._window)
        return home['XDG_DATA_HOME']

    def _add_folder(self, folder):
        """Adds it in the Services pane, which this gives."""
        self._screen.press('ctrl+comma')
        self._click(self._tree.find('check box', 'Services'))
        pane = self._tree.find('frame', 'Services')
        self._click(pane.find('push button', 'Add Folder…'))
        name = self._tree.find('dialog', 'Add Folder').find('text', 'Folder:')
        wait_for(lambda: name.has('focused'), 'the field has the focus')
        self._screen.press('ctrl+a')
        self._screen.type(folder)
        self._screen.press('Return')
        return pane

    def _download_online(self):
        self._type('paper lighthouse')
        self._select_first()
        self._screen.press('ctrl+s')

    def _take_alert(self, state):
        self._tree.find('alert message')
        self._take(state)

    def _start_at(self, maker, entry, title):
        """Starts a program that knows this maker, and opens a window of its menu, which is what is taken."""
        self._start(program=maker.program, settings=maker.settings())
        self._click(self._tree.find('button menu', 'Main menu'))
        wait_for(lambda: len(self._screen.windows_of(self._program.pid)) > 1, 'the menu is shown')
        self._screen.press(*['Down'] * STEPS_DOWN[entry], 'Return')
        self._window = self._screen.window(f'^{title}$')
        wait_for(lambda: self._screen.active_window() == self._window, 'the window is active')

    def _start(self, *arguments, program='plovendix', settings=None, environment=None):
        home = self._desktop.new_home()
        home.update(environment or {})
        if settings:
            path = os.path.join(home['XDG_CONFIG_HOME'], 'Quorvane', 'Plovendix.conf')
            os.makedirs(os.path.dirname(path))
            with open(path, 'w', encoding='utf-8') as file:
                file.write('[General]\n' + ''.join(f'{key}={value}\n' for key, value in settings.items()))
        home['PLOVENDIX_SCRIPT_FOLDER'] = os.path.join(home['HOME'], 'script')
        home['QT_SCALE_FACTOR'] = str(self._scale)
        self._program = self._desktop.start([os.path.join(self._build, program), *arguments], 'program', environment=home)
        self._window = self._screen.window('^Plovendix')
        self._tree = self._desktop.accessible(self._program)
        wait_for(lambda: self._screen.active_window() == self._window, 'the window is active')
        return home

    def _sample(self):
        """A fresh copy of the sample, so that a subtitle can be saved beside it."""
        folder = os.path.join(self._desktop.folder, 'Videos')
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(os.path.join(self._build, 'resources', 'sample'), folder)
        return str(next(pathlib.Path(folder).glob('*.mkv')))

    def _click(self, accessible):
        # Accessibles speak of points, the mouse of pixels.
        self._screen.click(*(self._scale * coordinate for coordinate in accessible.centre))

    def _type(self, text):
        field = self._tree.find('text', 'Search')
        wait_for(lambda: field.has('focused'), 'the field has the focus')
        self._screen.type(text)
        self._screen.press('Return')

    def _wait_for_rows(self):
        wait_for(lambda: self._tree.find_all('list item'), 'the sample is found')

    def _select_first(self):
        self._wait_for_rows()
        self._click(self._tree.find('list item'))
        self._tree.find('push button', 'Download')

    def _take(self, state, window=None):
        remains(self._program.runs, 'the program runs', SETTLE_SECONDS)
        x, y, width, height = self._screen.geometry(window or self._window)
        margin = MARGIN_POINTS * self._scale
        text = self._screen.properties(window or self._window, '_GTK_FRAME_EXTENTS').get('_GTK_FRAME_EXTENTS', '0')
        spare = margin - int(text.split(',')[0])
        part = self._screen.picture().cut(x - spare, y - spare, width + 2 * spare, height + 2 * spare)
        part.save(os.path.join(TARGET, f'{state}-{self._name}@{self._scale}x.png'))
        self._program.stop()
        if self._service:
            self._service.stop()
            self._service = None


STATES = (Studio.idle, Studio.dragging, Studio.results, Studio.panel, Studio.sheet, Studio.saved, Studio.nothing_found,
          Studio.alert, Studio.menu, Studio.general, Studio.updates,
          Studio.languages, Studio.about, Studio.donation, Studio.services, Studio.folder_running,
          Studio.folder_added, Studio.offline_hint, Studio.no_network,
          Studio.local_rows, Studio.service_down,
          Studio.key_refused, Studio.login_refused, Studio.limit_reached, Studio.downloads_left,
          Studio.update_found, Studio.up_to_date, Studio.update_refused, Studio.feedback, Studio.feedback_kept)


def main(build):
    os.makedirs(TARGET, exist_ok=True)
    for name, scheme in SCHEMES.items():
        for scale in SCALES:
            size = (1300 * scale, 1000 * scale)
            with Desktop(size=size, scheme=scheme, ground=GROUNDS[name]) as desktop:
                studio = Studio(desktop, build, name, scale)
                for state in STATES:
                    state(studio)
    print(f'{len(os.listdir(TARGET))} pictures in {TARGET}')


if __name__ == '__main__':
    main(os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, 'build', 'dev')))
