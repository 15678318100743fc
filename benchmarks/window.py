"""start_to_window and resident_memory: the program against a plain window with the same widgets, started in turn.

The time runs from the start of the process until its main window is on screen and painted; the memory is what the kernel
counts as resident (Rss: it does not depend on which other programs run) once nothing is drawn any more.

usage: window.py WATCH PROGRAM FLOOR [--quick]; on a display
"""
import argparse
import json
import statistics
import subprocess
import sys

PAIRS = 41
QUICK_PAIRS = 7


def look(watch, program):
    report = subprocess.run([watch, program], stdout=subprocess.PIPE, encoding='utf-8', check=True)
    return json.loads(report.stdout.splitlines()[-1])


def main(arguments):
    parser = argparse.ArgumentParser()
    parser.add_argument('watch')
    parser.add_argument('program')
    parser.add_argument('floor')
    parser.add_argument('--quick', action='store_true')
    chosen = parser.parse_args(arguments)
    programs = (chosen.program, chosen.floor)
    for program in programs:  # now its files are in the system's cache
        look(chosen.watch, program)
    seen = {program: [] for program in programs}
    for _pair in range(QUICK_PAIRS if chosen.quick else PAIRS):
        for program in programs:
            seen[program].append(look(chosen.watch, program))

    def medians(what):
        return [statistics.median(entry[what] for entry in seen[program]) for program in programs]

    for name, what, unit, scale in (('start_to_window', 'milliseconds', 'ms', 1), ('resident_memory', 'rss', 'MiB', 1024)):
        value, floor = medians(what)
        print(json.dumps({'name': name, 'value': value / scale, 'floor': floor / scale, 'unit': unit}))
    print('window: proportional set sizes {:.0f} and {:.0f} KiB'.format(*medians('pss')), file=sys.stderr)


if __name__ == '__main__':
    main(sys.argv[1:])
