"""The environment of a test and of the programs that it starts: a few variables by name, and folders of the test's own.

Importing this drops all the person's other variables from the process, so that a library in it and a program that is
started without an environment see none of them either. It is imported before any library that reads them.
"""
import os

INHERITED = ('PATH', 'LD_LIBRARY_PATH', 'TMPDIR', 'TSAN_OPTIONS', 'ASAN_OPTIONS', 'LSAN_OPTIONS', 'UBSAN_OPTIONS', 'LLVM_PROFILE_FILE')
OF_THE_TEST = ('PLOVENDIX_BUILD',)
SYSTEM_DATA = '/usr/share'
# Types of files, pictures of the pointer, the window manager's theme and the libraries' own settings. No applications:
# what is installed on a machine, a browser for instance, must not handle what a test opens.
DATA = ('glib-2.0', 'icons', 'mime', 'themes')
SYSTEM_CONFIGURATION = '/etc/xdg'
CONFIGURATION = ('openbox',)


def inherited():
    """What programs under test take over from the person's environment."""
    return {name: os.environ[name] for name in INHERITED if name in os.environ}


def own_folders(parent):
    """Makes the folders that a system shares among its persons below `parent`; the variables that name them."""
    return {'XDG_DATA_DIRS': _linked(os.path.join(parent, 'data'), SYSTEM_DATA, DATA),
            'XDG_CONFIG_DIRS': _linked(os.path.join(parent, 'configuration'), SYSTEM_CONFIGURATION, CONFIGURATION)}


def _linked(folder, source, names):
    os.mkdir(folder)
    for name in names:
        if os.path.isdir(os.path.join(source, name)):
            os.symlink(os.path.join(source, name), os.path.join(folder, name))
    return folder


def _forget_the_persons_variables():
    for name in set(os.environ) - {*INHERITED, *OF_THE_TEST}:
        del os.environ[name]


_forget_the_persons_variables()
