"""names: the time to read one name, against GuessIt on the same names in the same run. Both are the median over the names,
so that one name that is a trap for either does not decide.

usage: names.py PROGRAM [--quick] [--corpus FILE]; PROGRAM reads names and writes microseconds, one a line
"""
import argparse
import json
import random
import statistics
import subprocess
import sys
import time

QUICK_NAMES = 150
MADE_NAMES = 600
SEED = 20190412

TITLES = ('Brack', 'The Long Harbour', 'Seven Lamps', 'Ostrava Nights', 'A Quiet Machine', 'Copper and Salt', 'Winterfell Road',
          'Nine to None', 'The 13th Orchard', 'Lumen', 'Old Bridges', 'Halfway to Tromso')
SOURCES = ('BluRay', 'WEB-DL', 'WEBRip', 'HDTV', 'DVDRip', 'BDRip')
RESOLUTIONS = ('480p', '576p', '720p', '1080p', '2160p')
CODECS = ('x264', 'x265', 'H.264', 'HEVC', 'XviD')
SOUNDS = ('DTS', 'AAC2.0', 'DD5.1', 'AC3', 'TrueHD.7.1')
GROUPS = ('GRP', 'NORTH', 'quill', 'TiDE', 'OaK')
EXTENSIONS = ('.mkv', '.mp4', '.avi', '')


def made_names(count, source=random.Random(SEED)):
    """Names as releases bear them, of films and shows that do not exist; the same ones in every run."""
    def words(title, dot):
        return title.replace(' ', dot)

    names = []
    while len(names) < count:
        pick = source.choice
        title, year = pick(TITLES), source.randint(1950, 2024)
        season, episode = source.randint(1, 12), source.randint(1, 24)
        about = f'{pick(RESOLUTIONS)}.{pick(SOURCES)}.{pick(SOUNDS)}.{pick(CODECS)}-{pick(GROUPS)}'
        names.append(pick((
            f'{words(title, ".")}.{year}.{about}',
            f'{words(title, ".")}.S{season:02}E{episode:02}.{about}',
            f'{words(title, "_")}_{season}x{episode:02}_{pick(RESOLUTIONS)}',
            f'{title} ({year}) [{pick(RESOLUTIONS)}]',
            f'[{pick(GROUPS)}] {title} - {episode:02} [{pick(RESOLUTIONS)}]',
            f'{title} - S{season:02}E{episode:02} - {pick(TITLES)}',
        )) + pick(EXTENSIONS))
    return names


def names_of(corpus):
    """A name a line; of a table the first column, under its heading "filename" if it has one."""
    with open(corpus, encoding='utf-8') as file:
        lines = [line.rstrip('\n').split('\t')[0] for line in file]
    names = [line for line in lines if line]
    if names and names[0] == 'filename':
        names = names[1:]
    if not names:
        sys.exit(f'{corpus} has no names')
    return names


def times_of_guessit(names):
    """In microseconds; nothing where GuessIt is not installed."""
    try:
        from guessit import guessit
    except ImportError:
        print('names: GuessIt is not installed, so there is no floor', file=sys.stderr)
        return None
    guessit(names[0])  # builds its rules
    times = []
    for name in names:
        start = time.perf_counter()
        guessit(name)
        times.append((time.perf_counter() - start) * 1e6)
    return times


def main(arguments):
    parser = argparse.ArgumentParser()
    parser.add_argument('program')
    parser.add_argument('--quick', action='store_true')
    parser.add_argument('--corpus')
    chosen = parser.parse_args(arguments)
    names = names_of(chosen.corpus) if chosen.corpus else made_names(MADE_NAMES)
    if chosen.quick and len(names) > QUICK_NAMES:
        names = random.Random(SEED).sample(names, QUICK_NAMES)
    report = subprocess.run([chosen.program], input='\n'.join(names), stdout=subprocess.PIPE, encoding='utf-8', check=True)
    own = [float(line) for line in report.stdout.split()]
    if len(own) != len(names):
        sys.exit(f'{len(own)} times for {len(names)} names')
    floor = times_of_guessit(names)
    print(json.dumps({'name': 'names', 'value': statistics.median(own), 'floor': floor and statistics.median(floor),
                      'unit': 'us'}))


if __name__ == '__main__':
    main(sys.argv[1:])
