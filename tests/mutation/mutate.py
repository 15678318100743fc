#!/usr/bin/env python3
"""Breaks the program in small ways, one at a time, and prints which breaks its unit tests catch.

usage: tests/mutation/mutate.py [FOLDER…] [--count N] [--seed S] [--also TARGET]… [--build DIR] [--patches DIR]

The mutants are spread evenly over the statements of the folders' sources; the same seed gives the same ones. Each is
built in a copy of the tree and meets the test program of its folder (ui/scenes: ui_scenes_tests) and those of --also.
DIR of --build keeps the copy and its build for the next run; without it nothing is left. Each *.patch of DIR of
--patches, made for `git apply`, is tried as well.
"""
import argparse
import contextlib
import json
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
from collections import namedtuple

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / 'tests' / 'lint'))
from sources import code_only, line_of  # noqa: E402

TIMEOUT = 60  # seconds for one test class; a mutant that hangs is caught
LIMITS = {resource.RLIMIT_AS: 8 << 30, resource.RLIMIT_FSIZE: 1 << 30}  # a mutant may loop while it allocates or writes
OTHER = {'==': '!=', '!=': '==', '<': '<=', '<=': '<', '>': '>=', '>=': '>', '&&': '||', '||': '&&',
         'true': 'false', 'false': 'true', '0': '1', '1': '0'}
NO_BEHAVIOUR = re.compile(r'^#(?:[^\n]*\\\n)*[^\n]*|\bq?C?(?:Debug|Info|Warning|Critical)\s*\([^;]*;|\bqC[A-Z]\w+\s*\([^;]*;'
                          r'|\b(?:Q_ASSERT\w*|assert|static_assert|Q_UNUSED|Q_LOGGING_CATEGORY)\s*\([^;\n]*|^using [^;]*;',
                          re.MULTILINE)
CALL_OR_ASSIGNMENT = re.compile(r'^( +)(?!return\b|throw\b|delete\b|using\b|case\b|if\b|for\b|while\b|switch\b)'
                                r'(?:Q_EMIT |\+\+|--|\*)?[A-Za-z_][\w:]*(?:<[^;\n]*>)?'
                                r'(?:\.|->|\(|\[| (?:[-+*/%|&^]|<<|>>)?= )[^;\n]*;$', re.MULTILINE)

Mutant = namedtuple('Mutant', 'path line what edit')  # (start, end, new text), or the path of a patch


def closing(code, opening):
    depth = 0
    for position in range(opening, len(code)):
        depth += (code[position] == '(') - (code[position] == ')')
        if depth == 0:
            return position
    return len(code)


def changes_of(text):
    """Yields (kind, start, end, replacement, what) for every change that can be made."""
    code = NO_BEHAVIOUR.sub(lambda match: re.sub(r'[^\n]', ' ', match.group()), code_only(text))

    def change(kind, start, end, new, what=None):
        return kind, start, end, new, what or f'{" ".join(text[start:end].split())} → {" ".join(new.split())}'

    for match in re.finditer(r'(?<= )(?:==|!=|<=?|>=?|&&|\|\|)(?=\s)', code):
        yield change('operator', *match.span(), OTHER[match.group()])
    for match in re.finditer(r'\b(?:true|false)\b|(?<![\w.])(?:0x[0-9a-fA-F]+|0(?:\.\d+)?(?!\d)|[1-9][\d\']*(?:\.\d+)?)', code):
        value = match.group()
        if value in OTHER:
            yield change('constant', *match.span(), OTHER[value])
        else:
            number = float(value) if '.' in value else int(value.replace('\'', ''), 0)
            for new in (number - 1, number + 1):
                yield change('constant', *match.span(), hex(new) if value.startswith('0x') else str(new))
    for match in re.finditer(r'\b(?:if|while) \(', code):
        end = closing(code, match.end() - 1)
        start = max(match.end(), code.rfind(';', match.end(), end) + 1)
        declared = re.match(r'\s*(?:const )?[\w:<>]+ [*&]?(\w+) = ', code[start:end])
        condition = f'{text[start:end]}; !{declared[1]}' if declared else f' !({text[start:end].strip()})'
        yield change('condition', start, end, condition.lstrip() if start == match.end() else condition)
    for match in re.finditer(r'\breturn ([^;{}]+);', code):
        value = text[match.start(1):match.end(1)]
        if value not in OTHER and not re.fullmatch(r'nullptr|std::nullopt|Q\w+\(\)', value):
            yield change('return', *match.span(), 'return {};')
            yield change('return', *match.span(), f'return !({value});')
            yield change('return', *match.span(), 'return;')
    before = None
    for match in CALL_OR_ASSIGNMENT.finditer(code):
        if not re.search(r'[;{}:)]\s*$|\belse\s*$|^$', code[:match.start()]):
            continue
        start, end = match.end(1), match.end()
        yield change('statement', start, end, '{}', f'without {text[start:end]}')
        if before and before[1] + 1 == match.start() and before[2] == match[1]:
            first = text[before[0]:before[1]]
            yield change('statement', before[0], end, f'{text[start:end]}\n{match[1]}{first}', f'{first} one line later')
        before = start, end, match[1]


def statements_of(folder):
    """For each line that can be changed, in order, its mutants: a list for each kind of change."""
    for path in sorted((ROOT / folder).glob('*.cpp')):
        text = path.read_text()
        lines = {}
        for kind, start, end, new, what in changes_of(text):
            line = line_of(text, start)
            mutant = Mutant(str(path.relative_to(ROOT)), line, what, (start, end, new))
            lines.setdefault(line, {}).setdefault(kind, []).append(mutant)
        for line in sorted(lines):
            yield list(lines[line].values())


def choices(folders, count, seed):
    """For each of `count` equal parts of the statements its mutants in the order in which they are tried."""
    draw = random.Random(seed)
    statements = [statement for folder in folders for statement in statements_of(folder)]
    count = min(count, len(statements))
    for part in range(count):
        near = statements[part * len(statements) // count:(part + 1) * len(statements) // count]
        draw.shuffle(near)
        yield [draw.choice(draw.choice(statement)) for statement in near * 3]


def patches_of(folder):
    for patch in sorted(pathlib.Path(folder).resolve().glob('*.patch')):
        changed = re.findall(r'^--- a/(\S+)(?:.*\n)+?@@ -(\d+)', patch.read_text(), re.MULTILINE)
        if changed:
            yield Mutant(changed[0][0], int(changed[0][1]), patch.stem, patch)


def run(command, timeout=None, limits=(), **options):
    """Gives the exit code (None after a time-out) and the output; no process that it started goes on."""
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors='replace',
                               start_new_session=True, **options,
                               preexec_fn=lambda: [resource.setrlimit(key, (limits[key],) * 2) for key in limits])
    try:
        output = process.communicate(timeout=timeout)[0]
        return process.returncode, output
    except subprocess.TimeoutExpired:
        return None, ''
    finally:
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGKILL)
        process.wait()


def target_of(folder):
    return folder.replace('/', '_') + '_tests'


class Copy:
    """A copy of the tree, uncommitted changes included, in which mutants are built and tested."""

    def __init__(self, folder):
        self.root = pathlib.Path(folder) / 'plovendix-mutants'
        self.build = self.root / 'build' / 'dev'
        listed = subprocess.run(['git', 'ls-files', '-z', '--cached', '--others', '--exclude-standard'], cwd=ROOT,
                                check=True, capture_output=True, text=True).stdout.split('\0')
        names = {name for name in listed if (ROOT / name).is_file()}
        for old in [path for path in self.root.rglob('*') if path.is_file() and self.build.parent not in path.parents]:
            if str(old.relative_to(self.root)) not in names:
                old.unlink()
        for name in names:
            target = self.root / name
            if not target.is_file() or target.read_bytes() != (ROOT / name).read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(ROOT / name, target)
        # A dropped statement may leave something unused, which is a warning.
        status, output = run(['cmake', '--preset', 'dev', '--log-level=WARNING', '-DPLOVENDIX_WERROR=OFF'], cwd=self.root)
        if status != 0:
            sys.exit(output)

    def compiles(self, targets):
        return run(['cmake', '--build', self.build, '--parallel', str(os.cpu_count()), '--target', *targets])

    def failure(self, targets, source=''):
        """The first test that fails, those named like the source first; None when all pass."""
        listed = json.loads(run(['ctest', '--test-dir', self.build, '--show-only=json-v1'])[1])['tests']
        tests = [test for test in listed if os.path.basename(test.get('command', [''])[0]) in targets]
        stem = os.path.basename(source).split('.')[0]
        for test in sorted(tests, key=lambda test: -len(os.path.commonprefix([test['name'], stem]))):
            settings = {entry['name']: entry['value'] for entry in test['properties']}
            with tempfile.TemporaryDirectory() as scratch:
                variables = dict(entry.split('=', 1) for entry in settings.get('ENVIRONMENT', []))
                status, output = run(test['command'], TIMEOUT, LIMITS, cwd=settings['WORKING_DIRECTORY'],
                                     env={**os.environ, **variables, 'TMPDIR': scratch})
            if status != 0:
                failed = re.search(r'^(?:FAIL!|XPASS) +: (\S+?)\(', output, re.MULTILINE)
                ended = 'hangs' if status is None else f'ends with {status}'
                return failed[1] if failed else f'{test["name"]}, which {ended}'
        return None

    @contextlib.contextmanager
    def changed(self, mutant):
        """Changes the copy for as long as the block runs; gives whether the change could be made."""
        is_patch = isinstance(mutant.edit, pathlib.Path)
        paths = re.findall(r'^--- a/(\S+)', mutant.edit.read_text(), re.MULTILINE) if is_patch else [mutant.path]
        files = [self.root / path for path in paths]
        before = {file: file.read_text() for file in files if file.is_file()}
        try:
            if is_patch:  # outside of any repository, so that the paths begin here
                yield run(['git', 'apply', mutant.edit], cwd=self.root,
                          env={**os.environ, 'GIT_CEILING_DIRECTORIES': self.root.parent})[0] == 0
            else:
                start, end, new = mutant.edit
                files[0].write_text(before[files[0]][:start] + new + before[files[0]][end:])
                yield True
        finally:
            for file, text in before.items():
                file.write_text(text)


def is_caught(copy, mutant, also):
    """Prints what became of a mutant; None for one that does not compile."""
    targets = [target_of(os.path.dirname(mutant.path)), *also]
    with copy.changed(mutant) as made:
        if not made or copy.compiles(targets)[0] != 0:
            return None
        caught = copy.failure(targets, mutant.path)
    where = f'{mutant.path}:{mutant.line}: {mutant.what}'
    print(f'caught    {where}  [{caught}]' if caught else f'survived  {where}', flush=True)
    return caught is not None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('folders', nargs='*', metavar='FOLDER')
    parser.add_argument('--count', type=int, default=20)
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--also', action='append', default=[], metavar='TARGET')
    parser.add_argument('--build', metavar='DIR')
    parser.add_argument('--patches', metavar='DIR')
    given = parser.parse_args()
    folders = [os.path.relpath(os.path.abspath(folder), ROOT) for folder in given.folders]
    tries = list(choices(folders, given.count, given.seed))
    patches = list(patches_of(given.patches)) if given.patches else []
    for patch in [patch for patch in patches if not (ROOT / patch.path).is_file()]:
        print(f'stale     {patch.what}: {patch.path} is gone', flush=True)
        patches.remove(patch)
    targets = sorted({target_of(folder) for folder in folders + [os.path.dirname(patch.path) for patch in patches]})
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    with tempfile.TemporaryDirectory() as temporary:
        copy = Copy(given.build or temporary)
        status, output = copy.compiles([*targets, *given.also])
        if status != 0:
            sys.exit(output)
        if failed := copy.failure([*targets, *given.also]):
            sys.exit(f'{failed} fails without a mutant')
        scores = {}
        for mutants in tries + [[patch] for patch in patches]:
            for mutant in mutants:
                caught = is_caught(copy, mutant, given.also)
                if caught is not None:
                    scores.setdefault(os.path.dirname(mutant.path), []).append(caught)
                    break
            else:
                print(f'stale     {mutants[0].what}: it does not compile', flush=True)
    for folder, results in scores.items():
        print(f'{folder}: {sum(results)} of {len(results)} caught')


if __name__ == '__main__':
    main()
