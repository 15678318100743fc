"""One running instance of the installed program, and every way in which the desktop reaches or starts it."""
import configparser
import os
import signal
import subprocess
import unittest

import environment  # noqa: F401  before the libraries that read the variables
from gi.repository import Gio, GLib

from installed import IDENTIFIER, InstalledTest, request
from waiting import wait_for


class InstallationTest(InstalledTest):
    def applications(self, prefix=None):
        return os.path.join(prefix or self.prefix, 'share', 'applications')

    def test_the_entries_are_valid(self):
        for name in (IDENTIFIER, f'{IDENTIFIER}.mpv'):
            entry = os.path.join(self.applications(), f'{name}.desktop')
            checked = subprocess.run(['desktop-file-validate', entry], capture_output=True, text=True, check=False)
            self.assertEqual((checked.returncode, checked.stdout), (0, ''))

    def test_the_databases_know_the_scheme_and_the_videos(self):
        cache = configparser.ConfigParser()
        cache.read(os.path.join(self.applications(), 'mimeinfo.cache'))
        for kind in ('x-scheme-handler/plovendix', 'video/x-matroska', 'video/mp4'):
            self.assertEqual(cache['MIME Cache'][kind], f'{IDENTIFIER}.desktop;')

    def test_a_percent_sign_in_the_folder_is_no_field_code(self):
        for name in ('100% of it', '%f', 'a $b `c` "d" %U'):
            with self.subTest(name):
                prefix = os.path.join(self.home['HOME'], name)
                self.application_of(prefix)
                entry = self.entry(prefix)
                checked = subprocess.run(['desktop-file-validate', entry], capture_output=True, text=True, check=False)
                self.assertEqual((checked.returncode, checked.stdout), (0, ''))
                self.assertEqual(self.started_by(entry), [os.path.join(prefix, 'bin', 'plovendix'), '/a b.mkv'])

    def entry(self, prefix):
        return os.path.join(self.applications(prefix), f'{IDENTIFIER}.desktop')

    def application_of(self, prefix):
        """The desktop's view of the program once it is installed in that folder."""
        self.install(prefix)
        application = Gio.DesktopAppInfo.new_from_filename(self.entry(prefix))
        self.assertIsNotNone(application)
        return application

    def started_by(self, entry):
        """The words of the process that the desktop starts for a file, seen by a program in the place of ours."""
        file = GLib.KeyFile()
        file.load_from_file(entry, GLib.KeyFileFlags.NONE)
        program = file.get_string('Desktop Entry', 'TryExec')
        self.assertTrue(os.path.isfile(program), program)
        with open(program, 'w', encoding='utf-8') as stand_in:
            stand_in.write('#!/bin/sh\nprintf "%s\\n" "$0" "$@" > "$HOME/started.new"; mv "$HOME/started.new" "$HOME/started"\n')
        # The bus would start what the service file says.
        file.remove_key('Desktop Entry', 'DBusActivatable')
        context = Gio.AppLaunchContext()
        context.setenv('HOME', self.home['HOME'])
        started = os.path.join(self.home['HOME'], 'started')
        if os.path.exists(started):
            os.remove(started)
        Gio.DesktopAppInfo.new_from_keyfile(file).launch([Gio.File.new_for_path('/a b.mkv')], context)
        wait_for(lambda: os.path.exists(started), 'the program is started')
        with open(started, encoding='utf-8') as words:
            return words.read().splitlines()


class RunningInstanceTest(InstalledTest):
    def setUp(self):
        super().setUp()
        self.launch_installed()
        other, _ = self.desktop.drag_source('text/plain', 'words')
        self.addCleanup(other.stop)
        front = self.screen.window('^Drag source$')
        self.screen.activate(front)
        wait_for(lambda: self.screen.active_window() == front, 'another window is in front')

    def assert_reached(self, name):
        self.wait_for_field(name)
        wait_for(lambda: self.screen.active_window() == self.window, 'the window has come to the front')
        self.assertEqual(self.owner().pid, self.program.pid)
        self.assertEqual(self.screen.windows('^Plovendix'), [self.window])

    def test_a_file_over_the_bus(self):
        self.open_over_bus('file://' + self.video('A.mkv'), 'file://' + self.video('B.mkv'))
        self.assert_reached('A.mkv')

    def test_the_desktop_opens_a_url(self):
        self.run_tool('xdg-open', request(self.video('A.mkv')))
        self.assert_reached('A.mkv')

    def test_a_second_start_with_a_file_named_from_where_it_is(self):
        self.video('A.mkv')
        second = self.desktop.start([self.installed, 'A.mkv'], 'second', environment=self.home, cwd=self.videos)
        self.assertEqual(second.wait_for_exit(), 0)
        self.assert_reached('A.mkv')

    def test_a_start_on_behalf_of_a_launcher(self):
        self.home['DESKTOP_STARTUP_ID'] = 'launcher-1-host-plovendix-0_TIME1'
        self.run_tool(self.installed, self.video('A.mkv'))
        self.assert_reached('A.mkv')

    def test_an_action_of_the_menu_over_the_bus(self):
        self.run_tool('gapplication', 'action', IDENTIFIER, 'preferences')
        self.tree.find('frame', 'General')
        self.run_tool('xdg-open', request(self.video('A.mkv')))
        self.wait_for_field('A.mkv')

    def test_a_stopped_instance_does_not_block(self):
        os.kill(self.program.pid, signal.SIGSTOP)
        try:
            second = self.desktop.start([self.installed, self.video('A.mkv')], 'second', environment=self.home)
            self.addCleanup(second.stop)
            wait_for(lambda: self.screen.windows_of(second.pid), 'the second runs alone')
        finally:
            os.kill(self.program.pid, signal.SIGCONT)


class ColdStartTest(InstalledTest):
    def test_a_url_starts_the_program_and_is_served(self):
        self.run_tool('gapplication', 'launch', IDENTIFIER, request(self.video('A.mkv')))
        self.adopt()
        self.wait_for_field('A.mkv')

    def test_a_file_starts_the_program_over_the_bus(self):
        self.open_over_bus('file://' + self.video('A.mkv'))
        self.adopt()
        self.wait_for_field('A.mkv')

    def test_it_starts_and_searches_in_any_locale(self):
        for variables in ({'LANG': 'C'}, {'LC_ALL': ''}, {'LC_ALL': 'oc_FR.UTF-8'}, {'LC_ALL': 'wa_BE.UTF-8'}, {'LC_ALL': 'no such'},
                          {'LC_ALL': 'ja_JP.UTF-8'}):
            with self.subTest(**variables):
                self.home.pop('LC_ALL', None)
                self.home.update(variables)
                self.launch_installed(self.sample())
                wait_for(lambda: self.screen.title(self.window) != 'Plovendix', 'the search ends')
                self.screen.close_window(self.window)
                self.assertEqual(self.program.wait_for_exit(), 0)


class NoBusTest(InstalledTest):
    def test_without_a_bus_every_instance_runs_alone(self):
        home = {name: value for name, value in self.home.items() if name != 'DBUS_SESSION_BUS_ADDRESS'}
        programs = [self.desktop.start([self.installed], f'alone{number}', environment=home) for number in (1, 2)]
        for program in programs:
            self.addCleanup(program.stop)
        for program in programs:
            wait_for(lambda pid=program.pid: self.screen.windows_of(pid), 'it has a window')


if __name__ == '__main__':
    unittest.main(verbosity=2)
