"""What the benchmarks' programs say, as a table and as a list."""
import json
import math
import os
import platform
import re

FIELDS = {'name', 'value', 'floor', 'unit'}
BEGIN, END = '<!-- ./bench writes from here -->', '<!-- to here -->'


class BadReport(Exception):
    pass


def _is_amount(value):
    return isinstance(value, (int, float)) and not isinstance(value, bool) and math.isfinite(value) and value >= 0


def _result(line):
    try:
        said = json.loads(line)
    except ValueError as error:
        raise BadReport(f'no JSON: {line}') from error
    if not isinstance(said, dict) or set(said) != FIELDS:
        raise BadReport(f'not the fields {", ".join(sorted(FIELDS))}: {line}')
    texts = isinstance(said['name'], str) and isinstance(said['unit'], str)
    floor = said['floor'] is None or (_is_amount(said['floor']) and said['floor'] > 0)
    if not texts or not _is_amount(said['value']) or not floor:
        raise BadReport(f'not a name, an amount, a floor above nothing and a unit: {line}')
    ratio = None if said['floor'] is None else round(said['value'] / said['floor'], 5)
    return {'name': said['name'], 'value': said['value'], 'floor': said['floor'], 'ratio': ratio, 'unit': said['unit']}


def results_of(output, names):
    """One result for each of the names, in their order, from a program's lines; anything else is a BadReport."""
    results = {}
    for line in output.splitlines():
        if not line.strip():
            continue
        result = _result(line)
        if result['name'] in results or result['name'] not in names:
            raise BadReport(f'not expected: {line}')
        results[result['name']] = result
    missing = [name for name in names if name not in results]
    if missing:
        raise BadReport('nothing said of ' + ', '.join(missing))
    return [results[name] for name in names]


def _amount(value):
    if value is None:
        return '–'
    return f'{value:.0f}' if value >= 1000 else f'{value:.3g}'


def table(results):
    """The results as a table of Markdown that reads well as it is."""
    rows = [('benchmark', 'value', 'floor', 'unit', 'ratio')]
    for result in results:
        rows.append((result['name'], _amount(result['value']), _amount(result['floor']), result['unit'],
                     _amount(result['ratio'])))
    widths = [max(len(row[column]) for row in rows) for column in range(5)]
    rows.insert(1, tuple('-' * width for width in widths))
    return ''.join('| ' + ' | '.join(cell.ljust(width) for cell, width in zip(row, widths)) + ' |\n' for row in rows)


def _first(pattern, path, otherwise):
    try:
        with open(path, encoding='utf-8', errors='replace') as file:
            found = re.search(pattern, file.read(), re.MULTILINE)
    except OSError:
        found = None
    return found.group(1).strip() if found else otherwise


def machine():
    """The machine in a line: processor, cores, memory, system."""
    processor = _first(r'^model name\s*:\s*(.+)$', '/proc/cpuinfo', platform.machine())
    kibibytes = int(_first(r'^MemTotal:\s*(\d+)', '/proc/meminfo', '0'))
    system = _first(r'^PRETTY_NAME="?([^"\n]+)', '/etc/os-release', platform.system())
    return f'{processor}, {len(os.sched_getaffinity(0))} cores, {kibibytes / 2**20:.0f} GiB, {system}, ' \
           f'Linux {platform.release().split("-")[0]}'


def write_list(path, results):
    with open(path, 'w', encoding='utf-8') as file:
        json.dump(results, file, indent=2)
        file.write('\n')


def write_table(path, results, date, described):
    """Replaces what stands between the two marks of the document; the words around them are a person's."""
    with open(path, encoding='utf-8') as file:
        text = file.read()
    before, begin, rest = text.partition(BEGIN)
    _old, end, after = rest.partition(END)
    if not begin or not end:
        raise BadReport(f'{path} has no place for the table')
    with open(path, 'w', encoding='utf-8') as file:
        file.write(f'{before}{begin}\n\n{date}, {described}.\n\n{table(results)}\n{end}{after}')
