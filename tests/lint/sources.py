"""The project's sources, and what of them is code."""
import os
import re

ROOMS = ('app', 'features', 'sources', 'ui', 'media', 'net', 'model', 'base', 'resources')
CPP = ('.cpp', '.h')
NOT_OURS = ('build', '.git', '.cache', '__pycache__')

_COMMENT_OR_STRING = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"(?P<mark>[^()\\ ]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'', re.DOTALL)


def files(root, folders=None, suffixes=None):
    """Paths relative to `root`, sorted; with no `folders` the whole tree but what a build leaves in it."""
    found = []
    for start in folders or ('.',):
        for folder, names, leaves in os.walk(os.path.join(root, start)):
            names[:] = [name for name in names if name not in NOT_OURS]
            found += [os.path.relpath(os.path.join(folder, leaf), root) for leaf in leaves
                      if leaf not in NOT_OURS and (suffixes is None or leaf.endswith(suffixes))]
    return sorted(set(found))


def read(root, path):
    """The text of a file, or nothing for one that is no text."""
    with open(os.path.join(root, path), 'rb') as file:
        content = file.read()
    try:
        return content.decode() if b'\0' not in content else ''
    except UnicodeDecodeError:
        return ''


def code_only(text):
    """C++ text with comments and the insides of literals blanked, every character in its place."""
    def blank(match):
        found = match.group()
        blanks = re.sub(r'[^\n]', ' ', found)
        return f'"{blanks[1:-1]}"' if '"' in found[:2] and not found.startswith('/') else blanks
    return _COMMENT_OR_STRING.sub(blank, text)


def line_of(text, position):
    return text.count('\n', 0, position) + 1


def arguments(text, opening):
    """The top-level arguments of the call whose parenthesis opens at `opening`."""
    depth, start, result = 0, opening + 1, []
    for position in range(opening, len(text)):
        character = text[position]
        if character in '([{':
            depth += 1
        elif character in ')]}':
            depth -= 1
        if depth == 0 or (depth == 1 and character == ','):
            result.append(text[start:position].strip())
            start = position + 1
        if depth == 0:
            break
    return result
