"""Pictures of the screen: colours, parts, and PNG files."""
import struct
import zlib


class Picture:
    """Pixels as red, green, blue bytes, row by row from the top."""

    def __init__(self, width, height, pixels):
        self.width = width
        self.height = height
        self.pixels = pixels

    def colour(self, x, y):
        start = 3 * (int(y) * self.width + int(x))
        return tuple(self.pixels[start:start + 3])

    def cut(self, x, y, width, height):
        """The part of that area that lies on the screen."""
        left, top = max(0, x), max(0, y)
        right, bottom = min(self.width, x + width), min(self.height, y + height)
        rows = (self.pixels[3 * (row * self.width + left):3 * (row * self.width + right)] for row in range(top, bottom))
        return Picture(right - left, bottom - top, b''.join(rows))

    def save(self, path):
        """Writes a PNG."""
        def chunk(kind, data):
            return struct.pack('>I', len(data)) + kind + data + struct.pack('>I', zlib.crc32(kind + data))
        lines = b''.join(b'\0' + self.pixels[3 * row * self.width:3 * (row + 1) * self.width] for row in range(self.height))
        header = struct.pack('>2I5B', self.width, self.height, 8, 2, 0, 0, 0)
        with open(path, 'wb') as file:
            file.write(b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', header) + chunk(b'IDAT', zlib.compress(lines))
                       + chunk(b'IEND', b''))
