"""One function a rule. Each takes the root of the tree and yields (path, line, what is wrong)."""
import os
import re
import subprocess

from sources import CPP, ROOMS, arguments, code_only, files, line_of, read

MAX_LINES = 400


def _matches(root, paths, pattern, message, prepare=code_only):
    expression = re.compile(pattern)
    for path in paths:
        text = prepare(read(root, path))
        for match in expression.finditer(text):
            yield path, line_of(text, match.start()), message.format(match.group().strip())


def _cpp(root, *folders):
    return files(root, folders or ROOMS + ('tests', 'benchmarks', 'fuzz'), CPP)


def tests_do_not_sleep(root):
    """Tests wait for facts; a pause is either too short or too long."""
    yield from _matches(root, _cpp(root, 'tests'),
                        r'\b(qWait|qSleep|sleep_for|sleep_until|usleep|nanosleep|QThread::m?sleep)\s*\(',
                        '{} pauses instead of waiting for a fact')
    # The harness of the desktop tests has the one polling loop with a deadline that all of them use.
    scripts = [path for path in files(root, ('tests',), '.py') if path != os.path.join('tests', 'desktop', 'waiting.py')]
    yield from _matches(root, [path for path in scripts if not path.startswith(os.path.join('tests', 'lint'))],
                        r'\bsleep\s*\(', '{} pauses instead of waiting for a fact', prepare=str)


def tests_do_not_time(root):
    """A limit of time fails on a busy machine or passes a break; one test draws its moments from a clock."""
    draws_moments = os.path.join('tests', 'sources', 'catalogue', 'import', 'CatalogueKillTest.cpp')
    paths = [path for path in _cpp(root, 'tests') if path.endswith('Test.cpp') and path != draws_moments]
    yield from _matches(root, paths, r'\b(QElapsedTimer\b|clock_gettime\s*\(|(steady|system)_clock::now\s*\()',
                        '{} judges by the clock instead of by a fact')
    scripts = [path for path in files(root, ('tests',), '.py') if path.endswith('_test.py')]
    yield from _matches(root, [path for path in scripts if not path.startswith(os.path.join('tests', 'lint'))],
                        r'\b(monotonic|perf_counter)\s*\(', '{} judges by the clock instead of by a fact', prepare=str)


def connections_are_typed(root):
    # The session bus knows its receivers by name alone, so whoever listens to it has no typed way.
    typed = [path for path in _cpp(root) if '#include <QDBusConnection>' not in read(root, path)]
    yield from _matches(root, typed, r'\b(SIGNAL|SLOT)\s*\(', '{} is checked only when it runs')
    yield from _matches(root, _cpp(root), r'(?<![\w.>])sender\(\)', '{} is null or wrong in direct calls')
    yield from _matches(root, _cpp(root), r'\bon_\w+_\w+\s*\(', '{} connects itself by its name')


def connections_have_a_context(root):
    """A lambda without a context object outlives what it captured."""
    for path in _cpp(root):
        text = code_only(read(root, path))
        for match in re.finditer(r'\b(connect|singleShot)\s*\(', text):
            given = arguments(text, match.end() - 1)
            receiver = 2 if match.group(1) == 'connect' else 1
            if len(given) > receiver and given[receiver].startswith('['):
                yield path, line_of(text, match.start()), f'{match.group(1)} of a lambda without a context object'


def events_are_not_pumped(root):
    yield from _matches(root, _cpp(root), r'\bprocessEvents\s*\(', '{} runs what the caller does not expect')


def files_are_short(root):
    for path in files(root, suffixes=CPP + ('.py',)):
        count = read(root, path).count('\n')
        if count > MAX_LINES:
            yield path, count, f'{count} lines, more than {MAX_LINES}'


def only_the_entry_knows_sources(root):
    allowed = tuple(folder + os.sep for folder in (
        'app', 'sources', 'benchmarks', 'fuzz', *(os.path.join('tests', name) for name in ('app', 'sources', 'desktop'))))
    paths = [path for path in _cpp(root) if not path.startswith(allowed)]
    yield from _matches(root, paths, r'#include\s*[<"](\.\./)*sources/[^>"]*', '{} chooses an implementation',
                        prepare=str)


def includes_name_their_room(root):
    yield from _matches(root, _cpp(root), r'#include\s*[<"]\.\./[^>"]*', '{} goes around the room\'s door', prepare=str)


def files_are_written_whole(root):
    """A full disk empties what is written in place, and QSaveFile::commit reports success for an empty file."""
    paths = _cpp(root, *ROOMS)
    yield from _matches(root, paths, r'\b(QSaveFile|QTemporaryFile|std::ofstream|std::fopen)\b',
                        '{} loses files on a full disk; writeFile does not', prepare=code_only)
    yield from _matches(root, paths, r'(\.|->)open\s*\([^)]*\b(WriteOnly|ReadWrite|Append|Truncate)\b',
                        '{} writes in place; writeFile replaces the file whole')


def nothing_is_unfinished(root):
    words = '|'.join(('TO' + 'DO', 'FIX' + 'ME', 'X' + 'XX'))
    yield from _matches(root, files(root), rf'\b({words})\b', '{} left behind', prepare=str)


def no_paths_of_one_machine(root):
    """A path of somebody's machine in a source works there alone; one in the shared temporary folder is left behind."""
    folders = '|'.join(('ro' + 'ot', 'wo' + 'rk'))
    paths = [path for path in files(root) if not path.startswith(os.path.join('tests', 'lint'))]
    yield from _matches(root, paths, rf'(?<![\w.*)}}])/({folders})(?=[/"\'\s])|(?<![\w.}}])/tmp/\w+',
                        '{} exists on one machine', prepare=str)


def texts_have_one_way(root):
    """Bundle::localizedString is the lookup below String::localize, and String::fill alone knows the placeholders."""
    own = tuple(os.path.join('base', name) for name in ('Bundle', 'LocalizedString'))
    paths = [path for path in _cpp(root, *ROOMS) if not path.startswith(own)]
    yield from _matches(root, paths, r'\b(localizedString|QString (localized|filled))\s*\(',
                        '{} is another way than String::localize and String::fill')
    yield from _matches(root, paths, r'"%(\d\$)?[@d]"', '{} is looked for, which String::fill does', prepare=str)


def layout_is_clang_format(root):
    paths = _cpp(root)
    if not paths:
        return
    report = subprocess.run(['clang-format', '--dry-run', *paths], cwd=root, capture_output=True, text=True, check=True)
    seen = set()
    for match in re.finditer(r'^(?P<path>[^:\n]+):(?P<line>\d+):\d+: warning', report.stderr, re.MULTILINE):
        if match['path'] not in seen:
            seen.add(match['path'])
            yield match['path'], int(match['line']), 'clang-format -i lays it out differently from here on'


RULES = {rule.__name__: rule for rule in (
    tests_do_not_sleep, tests_do_not_time, connections_are_typed, connections_have_a_context, events_are_not_pumped,
    files_are_short, only_the_entry_knows_sources, includes_name_their_room, files_are_written_whole, nothing_is_unfinished,
    no_paths_of_one_machine, texts_have_one_way, layout_is_clang_format)}
