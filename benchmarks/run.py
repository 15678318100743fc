"""Runs the benchmarks: starts their programs, one after the other, and makes a table of what they say.

A program prints a line of JSON for each of its benchmarks, {"name", "value", "floor" or null, "unit"}, and accepts
--quick; what else it has to say goes to standard error.
"""
import argparse
import datetime
import os
import subprocess
import sys
import tempfile

import report

HERE = os.path.dirname(os.path.abspath(__file__))
PROJECT = os.path.dirname(HERE)
BUILD = os.path.join(PROJECT, 'build', 'bench')
TARGETS = os.path.join(BUILD, 'benchmarks', 'bench-')
DISPLAY = [os.path.join(PROJECT, 'packaging', 'virtual-display.sh')]


def script(name, *arguments):
    return [sys.executable, '-B', os.path.join(HERE, name), *arguments]


# The benchmarks' names and the program that measures them. A new one is a line here and a target in CMakeLists.txt.
PROGRAMS = (
    (('start_to_window', 'resident_memory'),
     DISPLAY + script('window.py', TARGETS + 'window-watch', os.path.join(BUILD, 'plovendix'), TARGETS + 'plain-window')),
    (('movie_hash',), [TARGETS + 'movie-hash']),
    (('names',), script('names.py', TARGETS + 'names')),
    (('list_reset', 'list_scroll'), DISPLAY + [TARGETS + 'results-list']),
    (('search_stall',), DISPLAY + script('stall.py', TARGETS + 'search-stall')),
    (('catalogue_hash_query', 'catalogue_text_query'), [TARGETS + 'catalogue-queries']),
    (('catalogue_import',), [TARGETS + 'catalogue-import']),
)


def home_environment(folder):
    """A temporary home for the measured programs, so that they neither read nor write the person's files."""
    environment = {**os.environ, 'HOME': folder, 'TMPDIR': os.path.join(folder, 'tmp'), 'LC_ALL': 'C.UTF-8',
                   'XDG_DATA_DIRS': '/usr/local/share:/usr/share'}
    for variable, name in (('XDG_CONFIG_HOME', '.config'), ('XDG_DATA_HOME', '.local/share'), ('XDG_CACHE_HOME', '.cache'),
                           ('XDG_STATE_HOME', '.local/state'), ('TMPDIR', 'tmp')):
        environment[variable] = os.path.join(folder, name)
        os.makedirs(environment[variable])
    for variable in ('LANGUAGE', 'LANG', 'LC_MESSAGES', 'QT_STYLE_OVERRIDE', 'QT_QPA_PLATFORMTHEME', 'QT_SCALE_FACTOR'):
        environment.pop(variable, None)
    return environment


def run(names, command, options):
    with tempfile.TemporaryDirectory(prefix='plovendix-bench-') as home:
        ran = subprocess.run(command + options, stdout=subprocess.PIPE, env=home_environment(home), check=False)
    if ran.returncode != 0:
        raise report.BadReport(f'stopped with {ran.returncode}')
    return report.results_of(ran.stdout.decode(), names)


def parsed(arguments, known):
    parser = argparse.ArgumentParser(prog='./bench', description='Measures each benchmark beside its floor.',
                                     epilog='Benchmarks: ' + ', '.join(known))
    parser.add_argument('names', nargs='*', metavar='NAME', help='run only these')
    parser.add_argument('--quick', action='store_true', help='fewer repetitions: a few minutes for all')
    parser.add_argument('--corpus', metavar='FILE', help='file names to read, one a line or the first column of a table')
    parser.add_argument('--write', action='store_true',
                        help='write the table into docs/benchmarks.md, which else only a full run does')
    chosen = parser.parse_args(arguments)
    unknown = [name for name in chosen.names if name not in known]
    if unknown:
        parser.error('there is no benchmark ' + ', '.join(unknown))
    return chosen


def main(arguments, programs=PROGRAMS, listing=os.path.join(PROJECT, 'build', 'bench.json'),
         document=os.path.join(PROJECT, 'docs', 'benchmarks.md')):
    chosen = parsed(arguments, [name for names, _command in programs for name in names])
    results = []
    for names, command in programs:
        wanted = [name for name in names if not chosen.names or name in chosen.names]
        if not wanted:
            continue
        options = ['--quick'] if chosen.quick else []
        if 'names' in names and chosen.corpus:
            options += ['--corpus', chosen.corpus]
        print('measuring ' + ', '.join(wanted), file=sys.stderr, flush=True)
        try:
            results += [result for result in run(names, command, options) if result['name'] in wanted]
        except (report.BadReport, OSError) as error:
            print(f'./bench: {", ".join(names)}: {error}', file=sys.stderr)
            return 1
    report.write_list(listing, results)
    print(report.table(results), end='', flush=True)
    if chosen.write or not (chosen.quick or chosen.names):
        report.write_table(document, results, datetime.date.today().isoformat(), report.machine())
    return 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
