"""Adding a folder of subtitles to the person's catalogue in the preferences."""
import contextlib
import os
import sqlite3
import subprocess
import unittest
import zipfile

from program_test import BUILD, REAL, ProgramTest
from waiting import wait_for

TABS_TO_THE_BUTTON = 12
MORE_THAN_A_BATCH = 300
CUE = '1\n00:00:01,000 --> 00:00:02,000\n{}\n\n'


def write_subtitle(folder, name, text='Hello', cue=CUE):
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, name), 'w', encoding='utf-8') as file:
        file.write(cue.format(text))


class FolderTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.folder = os.path.join(self.home['HOME'], 'Subtitles')
        self.catalogue = os.path.join(self.home['XDG_DATA_HOME'], 'Plovendix', 'catalogue.sqlite')

    def write_handful(self):
        for name in ('Tin.Orchard.2019.en.srt', 'Glass.Ferry.2020.en.srt', 'Salt.Garden.2018.de.srt'):
            write_subtitle(self.folder, name)
        with zipfile.ZipFile(os.path.join(self.folder, 'more.zip'), 'w') as archive:
            archive.writestr('Velvet.Harvest.2021.en.srt', CUE.format('one'))
            archive.writestr('Copper.Meadow.2016.fr.srt', CUE.format('two'))
        with open(os.path.join(self.folder, 'page.srt'), 'w', encoding='utf-8') as file:
            file.write('<!doctype html><html><body>Not found</body></html>')

    def write_many(self):
        """More than are entered at once, beside a catalogue that is there already."""
        write_subtitle(self.folder, 'Tin.Orchard.2019.en.srt')
        self.run_command('add', self.folder)
        for number in range(MORE_THAN_A_BATCH):
            write_subtitle(self.folder, f'Quiet.Engine.S01E{number:03}.en.srt', str(number))

    def run_command(self, *words):
        done = subprocess.run([os.path.join(BUILD, 'plovendix-catalogue'), *words],
                              env=self.home, capture_output=True, text=True, check=False, timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    @contextlib.contextmanager
    def another_writer(self):
        """Another program writes to the catalogue meanwhile, so that an import cannot end."""
        with contextlib.closing(sqlite3.connect(self.catalogue, isolation_level=None)) as database:
            database.execute('BEGIN IMMEDIATE')
            yield

    def open_pane(self):
        """With the keyboard alone; the tab of the pane has the focus then."""
        self.screen.activate(self.window)
        self.screen.press('ctrl+comma')
        self.wait_for_focus(self.tree.find('frame', 'General').find('check box', 'General'))
        self.screen.press('Right')
        pane = self.tree.find('frame', 'Services')
        self.wait_for_focus(pane.find('check box', 'Services'))
        return pane

    def add_folder(self, pane):
        self.screen.press(*['Tab'] * TABS_TO_THE_BUTTON)
        self.wait_for_focus(pane.find('push button', 'Add Folder…'))
        self.choose_folder()

    def choose_folder(self):
        """Presses the button that has the focus and types the folder's path."""
        self.screen.press('space')
        name = self.tree.find('dialog', 'Add Folder').find('text', 'Folder:')
        self.wait_for_focus(name)
        self.screen.press('ctrl+a')
        self.screen.type(self.folder)
        wait_for(lambda: name.text == self.folder, lambda: f'the path is typed, not {name.text}')
        self.screen.press('Return')
        self.wait_for_no('dialog', 'Add Folder')

    def wait_for_sentence(self, pane, sentence):
        wait_for(lambda: pane.find_all('label', lambda name: sentence in name),
                 lambda: f'the pane says "{sentence}"\n{pane.dump()}')

    def start_held_up(self):
        """An import that another writer keeps from its end."""
        self.launch(program=REAL)
        pane = self.open_pane()
        self.add_folder(pane)
        self.wait_for_sentence(pane, f' of {MORE_THAN_A_BATCH + 1} files')
        return pane

    def test_what_is_added_is_found_at_once(self):
        self.write_handful()
        self.launch(program=REAL)
        pane = self.open_pane()
        pane.find('label', lambda name: name.endswith(', comes with the program'))
        self.add_folder(pane)
        self.wait_for_sentence(pane, 'Subtitles added: 5. Could not be read: 1. “page.srt” is no subtitle.')
        self.wait_for_no('label', lambda name: name.endswith(', comes with the program'))
        self.wait_for_focus(pane.find('push button', 'Add Folder…'))
        self.screen.press('ctrl+w')
        self.wait_for_no('frame', 'Services')
        self.screen.activate(self.window)
        self.search('velvet harvest')
        wait_for(self.rows, lambda: f'what was in the archive is found\n{self.tree.dump()}')
        self.assertTrue(self.rows()[0].name.startswith('Velvet.Harvest.2021'), self.rows()[0].name)

    def test_quitting_ends_it_and_leaves_a_sound_catalogue(self):
        self.write_many()
        with self.another_writer():
            self.start_held_up()
            self.screen.activate(self.window)
            self.screen.press('ctrl+q')
            self.assertEqual(self.program.wait_for_exit(), 0)
        self.assertIn('check\tsound', self.run_command('stats', '--check'))
        self.run_command('--quiet', 'add', self.folder)
        self.assertIn(f'subtitles\t{MORE_THAN_A_BATCH + 1}\n', self.run_command('stats'))


if __name__ == '__main__':
    unittest.main(verbosity=2)
