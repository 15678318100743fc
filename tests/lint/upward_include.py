"""A source that includes a header of a room above its own must not compile: upward_include.py BUILD ROOM OWNER HEADER

Compiles two one-line sources with the very flags the build uses. Under the room's flags the compiler has to stop at the
include; under those of the header's owner the same line has to compile, or the first result would say nothing.
"""
import json
import os
import shlex
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def flags_of(build, room):
    """How the build compiles a source of the room, without the source and the object."""
    with open(os.path.join(build, 'compile_commands.json'), encoding='utf-8') as file:
        entries = json.load(file)
    folder = os.path.join(ROOT, room)
    entry = next((entry for entry in entries if os.path.dirname(entry['file']) == folder), None)
    if entry is None:
        sys.exit(f'No source of {room} is compiled in {build}')
    words = shlex.split(entry['command'])
    kept, skip = [], False
    for word in words:
        if skip or word in ('-o', '-MF', '-MT'):
            skip = not skip
        elif word not in ('-c', '-MD', entry['file']):
            kept.append(word)
    return kept, entry['directory']


def compiles(build, room, header):
    words, directory = flags_of(build, room)
    with tempfile.TemporaryDirectory() as folder:
        source = os.path.join(folder, 'probe.cpp')
        with open(source, 'w', encoding='utf-8') as file:
            file.write(f'#include <{header}>\n')
        return subprocess.run([*words, '-fsyntax-only', source], cwd=directory, capture_output=True, text=True,
                              env={**os.environ, 'LC_ALL': 'C'}, check=False)


def main(build, room, owner, header):
    allowed = compiles(build, owner, header)
    if allowed.returncode != 0:
        sys.exit(f'<{header}> does not compile in {owner}:\n{allowed.stderr}')
    refused = compiles(build, room, header)
    if refused.returncode == 0:
        sys.exit(f'{room} may include <{header}>, which lies above it')
    if f'probe.cpp:1:10: fatal error: {header}: No such file' not in refused.stderr:
        sys.exit(f'{room} stops at something else than the include of <{header}>:\n{refused.stderr}')


if __name__ == '__main__':
    main(*sys.argv[1:])
