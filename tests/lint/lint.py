"""Checks the tree against one rule, or against all: lint.py [RULE]"""
import os
import sys

from rules import RULES

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def main(names):
    broken = [problem for name in names or RULES for problem in RULES[name](ROOT)]
    for path, line, message in broken:
        print(f'{path}:{line}: {message}')
    return 1 if broken else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
