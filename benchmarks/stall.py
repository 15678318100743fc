"""search_stall: the longest stall of the main thread while searches with 20,000 results arrive and show; the median over
processes, since the first search of a process is the dearest.

usage: stall.py PROGRAM [--quick]; on a display
"""
import json
import statistics
import subprocess
import sys

PROCESSES = 11
QUICK_PROCESSES = 3


def main(arguments):
    program, *options = arguments
    count = QUICK_PROCESSES if '--quick' in options else PROCESSES
    stalls = [float(subprocess.run([program], stdout=subprocess.PIPE, check=True).stdout) for _process in range(count)]
    print(json.dumps({'name': 'search_stall', 'value': statistics.median(stalls), 'floor': None, 'unit': 'ms'}))


if __name__ == '__main__':
    main(sys.argv[1:])
