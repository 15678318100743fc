"""The Debian package: what it holds, what it asks for, and that the program in it runs where it is unpacked."""
import os
import re
import subprocess
import tempfile
import unittest

import environment

BUILD = os.environ['PLOVENDIX_BUILD']
SHARE = 'usr/share'
IDENTIFIER = 'com.quorvane.Plovendix'
METAINFO = f'{SHARE}/metainfo/{IDENTIFIER}.metainfo.xml'


def output_of(*words, **options):
    return subprocess.run(words, check=True, stdout=subprocess.PIPE, text=True, timeout=120, **options).stdout


class PackageTest(unittest.TestCase):
    """Makes the package once and unpacks it."""

    @classmethod
    def setUpClass(cls):
        folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        output_of('cpack', '--config', os.path.join(BUILD, 'CPackConfig.cmake'), '-B', folder,
                  '-D', 'CPACK_DEBIAN_COMPRESSION_TYPE=gzip', cwd=folder)
        names = [name for name in os.listdir(folder) if name.endswith('.deb')]
        cls.package = os.path.join(folder, *names)
        cls.root = os.path.join(folder, 'root')
        output_of('dpkg-deb', '--extract', cls.package, cls.root)

    def field(self, name):
        return output_of('dpkg-deb', '--field', self.package, name).strip()

    def unpacked(self, *path):
        return os.path.join(self.root, *path)

    def text(self, *path):
        with open(self.unpacked(*path), encoding='utf-8') as file:
            return file.read()

    def test_it_is_named_by_name_version_and_machine(self):
        self.assertEqual(os.path.basename(self.package),
                         f'plovendix_{self.field("Version")}_{self.field("Architecture")}.deb')

    def test_it_asks_for_the_libraries_that_its_programs_need(self):
        libraries = self.field('Depends')
        for library in ('libc6', 'libqt6widgets6', 'libqt6svg6', 'libqt6keychain1', 'libsqlite3-0', 'libarchive13'):
            self.assertRegex(libraries, rf'(^|, ){re.escape(library)}( |,|$)')
        self.assertIn('gnome-keyring', self.field('Recommends'))

    def test_every_file_lies_where_debian_has_such_files(self):
        for path in ('usr/bin/plovendix', 'usr/bin/plovendix-catalogue', 'usr/bin/plovendix-mpv-reply'):
            self.assertTrue(os.access(self.unpacked(path), os.X_OK), path)
        for path in (f'icons/hicolor/scalable/apps/{IDENTIFIER}.svg', 'man/man1/plovendix.1.gz', 'man/man1/plovendix-catalogue.1.gz', 'doc/plovendix/copyright',
                     'plovendix/Info.plist', 'plovendix/starter.sqlite'):
            self.assertTrue(os.path.isfile(self.unpacked(SHARE, path)), path)
        self.assertEqual(os.listdir(self.root), ['usr'])

    def test_all_belongs_to_root_and_only_root_may_write(self):
        for line in output_of('dpkg-deb', '--contents', self.package).splitlines():
            mode, owner = line.split()[:2]
            self.assertEqual(owner, 'root/root', line)
            self.assertRegex(mode, '^(drwxr-xr-x|-rwxr-xr-x|-rw-r--r--)$', line)

    def test_the_desktop_is_told_of_the_program_by_the_path_it_will_have(self):
        entry = self.text(SHARE, 'applications', f'{IDENTIFIER}.desktop')
        self.assertIn('\nExec=/usr/bin/plovendix %U\n', entry)
        self.assertIn('\nTryExec=/usr/bin/plovendix\n', entry)
        self.assertIn('\nExec=/usr/bin/plovendix\n',
                      self.text(SHARE, 'dbus-1/services', f'{IDENTIFIER}.service'))

    def test_the_program_runs_and_finds_its_resources_where_it_was_unpacked(self):
        with tempfile.TemporaryDirectory() as home:
            said = output_of(self.unpacked('usr/bin/plovendix'), '--version', env={**environment.inherited(), 'HOME': home})
        # The number comes from the resources; a package's may have more digits.
        self.assertRegex(said, r'^Plovendix \d+\.\d+\n$')
        self.assertTrue(self.field('Version').startswith(said.split()[1]))

    def test_its_metadata_is_what_software_centres_read(self):
        judged = subprocess.run(['appstreamcli', 'validate', '--no-net', self.unpacked(METAINFO)], capture_output=True, text=True,
                                check=False, timeout=60)
        self.assertEqual(judged.returncode, 0, judged.stdout + judged.stderr)

    def test_its_metadatas_latest_release_is_the_packages_version(self):
        releases = re.findall('<release version="([^"]+)"', self.text(METAINFO))
        self.assertEqual(releases[0], self.field('Version'))

    def test_its_metadatas_summaries_are_the_desktop_entrys(self):
        entry = self.text(SHARE, 'applications', f'{IDENTIFIER}.desktop')
        comments = {(language or '').replace('_', '-'): text
                    for language, text in re.findall(r'^Comment(?:\[(.+)\])?=(.+)$', entry, re.MULTILINE)}
        summaries = dict(re.findall('<summary(?: xml:lang="(.+)")?>(.+)</summary>',
                                    self.text(METAINFO)))
        self.assertEqual(summaries, comments)


if __name__ == '__main__':
    unittest.main(verbosity=2)
