#!/usr/bin/env python3
"""Draws the format icons of resources/icons: a page with a folded corner, two lines of text and a coloured label.

The letters are strokes on a grid 8.6 units high, so that no icon depends on a font. Run without arguments; the
icons beside this folder are rewritten.
"""
from pathlib import Path

# File name: label, colour of the label. White letters reach a contrast of 3:1 on every colour.
FORMATS = {
    "SRT": ("SRT", "#2f6fde"),
    "ASS": ("ASS", "#a04fd0"),
    "SSA": ("SSA", "#7a57d1"),
    "VTT": ("VTT", "#21936b"),
    "SUB": ("SUB", "#d07b2a"),
    "TXT": ("TXT", "#64748b"),
    "SMI": ("SMI", "#c74a86"),
    "MPL": ("MPL", "#1c8ba3"),
    "DFXP": ("DFXP", "#c2503f"),
    "IDX": ("IDX", "#8a7423"),
    "UNKNOWN": ("?", "#7b828c"),
}

# Letter: width, centre lines of strokes two units wide.
LETTERS = {
    "A": (7.0, "M1 8.6L3.1 1H3.9L6 8.6M1.9 6.2H5.1"),
    "B": (6.5, "M3.3 4.2C4.4 4.2 5 3.5 5 2.6S4.4 1 3.3 1H1V7.6H3.4C4.7 7.6 5.4 6.9 5.4 5.9S4.7 4.2 3.4 4.2H1"),
    "D": (6.8, "M1 1H2.8C4.8 1 5.8 2.3 5.8 4.3S4.8 7.6 2.8 7.6H1Z"),
    "F": (5.5, "M1 8.6V1H5.5M1 4.7H5"),
    "I": (2.0, "M1 0V8.6"),
    "L": (5.4, "M1 0V7.6H5.4"),
    "M": (8.0, "M1 8.6V1H1.6L4 6.2L6.4 1H7V8.6"),
    "P": (6.4, "M1 8.6V1H3.3C4.7 1 5.4 1.9 5.4 3.05S4.7 5.1 3.3 5.1H1"),
    "R": (6.6, "M1 8.6V1H3.3C4.7 1 5.4 1.8 5.4 2.95S4.7 4.9 3.3 4.9H1M3.3 4.9L5.6 8.6"),
    "S": (6.5, "M5.5 2.75C5.3 1.6 4.4 1 3.25 1C1.95 1 1.1 1.65 1.1 2.6C1.1 3.7 2.1 3.95 3.25 4.2"
               "C4.5 4.47 5.5 4.85 5.5 6C5.5 7 4.55 7.6 3.25 7.6C2 7.6 1.1 6.95 1 5.8"),
    "T": (6.4, "M0 1H6.4M3.2 1V8.6"),
    "U": (6.6, "M1 0V5.1C1 6.8 2 7.6 3.3 7.6S5.6 6.8 5.6 5.1V0"),
    "V": (7.0, "M1 0L3.1 7.6H3.9L6 0"),
    "X": (6.8, "M1.1 0L5.7 8.6M5.7 0L1.1 8.6"),
    "?": (6.0, "M1 2.9C1 1.7 1.8 1 3 1S5 1.7 5 2.75C5 4.1 3 4.2 3 5.9M3 6.9V8.7"),
}
LETTER_HEIGHT = 8.6
LETTER_GAP = 1.0
LABEL_X, LABEL_Y, LABEL_WIDTH, LABEL_HEIGHT = 8, 38, 40, 17

PAGE = """<svg xmlns="http://www.w3.org/2000/svg" width="64" height="64" viewBox="0 0 64 64">
  <path d="M15.5 4.5H41.5L53.5 16.5V55.5A4 4 0 0 1 49.5 59.5H15.5A4 4 0 0 1 11.5 55.5V8.5A4 4 0 0 1 15.5 4.5Z"
        fill="#ffffff" stroke="#000000" stroke-opacity="0.12"/>
  <path d="M41.5 4.5V15A1.5 1.5 0 0 0 43 16.5H53.5Z" fill="#e3e6ea" stroke="#000000" stroke-opacity="0.08"/>
  <path d="M20.5 23.5H37.5M20.5 30.5H44.5" fill="none" stroke="#c9ced6" stroke-width="3" stroke-linecap="round"/>
  <rect x="8" y="38" width="40" height="17" rx="5" fill="{colour}"/>
  <g transform="translate({x:g} {y:g})" fill="none" stroke="#ffffff" stroke-width="2" stroke-linejoin="miter">
{letters}
  </g>
</svg>
"""


def icon(label, colour):
    width = sum(LETTERS[letter][0] for letter in label) + LETTER_GAP * (len(label) - 1)
    lines, position = [], 0.0
    for letter in label:
        advance, strokes = LETTERS[letter]
        lines.append(f'    <path transform="translate({position:g} 0)" d="{strokes}"/>')
        position += advance + LETTER_GAP
    return PAGE.format(colour=colour, letters="\n".join(lines),
                       x=round(LABEL_X + (LABEL_WIDTH - width) / 2, 2),
                       y=round(LABEL_Y + (LABEL_HEIGHT - LETTER_HEIGHT) / 2, 2))


def main():
    folder = Path(__file__).resolve().parent.parent / "icons"
    for name, (label, colour) in FORMATS.items():
        (folder / f"{name}.svg").write_text(icon(label, colour), encoding="utf-8")


if __name__ == "__main__":
    main()
