"""Takes pictures of the screen for the harness: answers each line on standard input with "WIDTH HEIGHT" and the pixels.

It runs as a separate process, because the toolkit ends its program when the X server goes. It asks the toolkit for the
pixels, because the usual dump tool reads window by window and misses what the compositor makes of them.
"""
import sys

import gi

gi.require_version('Gdk', '3.0')
from gi.repository import Gdk  # noqa: E402


def shoot():
    root = Gdk.get_default_root_window()
    shot = Gdk.pixbuf_get_from_window(root, 0, 0, root.get_width(), root.get_height())
    stride, width = shot.get_rowstride(), 3 * shot.get_width()
    pixels = shot.get_pixels()
    rows = [pixels[row * stride:row * stride + width] for row in range(shot.get_height())]
    sys.stdout.buffer.write(f'{shot.get_width()} {shot.get_height()}\n'.encode() + b''.join(rows))
    sys.stdout.buffer.flush()


for _line in sys.stdin:
    shoot()
