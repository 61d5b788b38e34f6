# SPDX-License-Identifier: MIT
"""Pictures painted point by point, and the files they are kept in. Colours run from 0 to 1, x and y
from 0 to 1 across the picture, y downwards; what wraps around wraps at 1."""
import math
import struct
import zlib


class Picture:
    def __init__(self, width, height, shader):
        """shader(x, y) gives (r, g, b) or (r, g, b, a) for the middle of each texel."""
        self.width, self.height = width, height
        self.rows = []
        for j in range(height):
            y = (j + 0.5) / height
            self.rows.append([(tuple(c) + (1.0,))[:4] for c in
                              (shader((i + 0.5) / width, y) for i in range(width))])

    def half(self):
        def texel(x, y):
            i, j = int(x * self.width / 2) * 2, int(y * self.height / 2) * 2
            block = [self.rows[j + b][i + a] for a in (0, 1) for b in (0, 1)]
            return tuple(sum(c[k] for c in block) / 4 for k in range(4))
        return Picture(self.width // 2, self.height // 2, texel)


# ---- Numbers

def clamp(value, low=0.0, high=1.0):
    return min(max(value, low), high)


def mix(a, b, t):
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def scaled(color, factor):
    return tuple(clamp(c * factor) for c in color[:3]) + tuple(color[3:])


def smooth(low, high, value):
    t = clamp((value - low) / (high - low))
    return t * t * (3 - 2 * t)


def chance(*key):
    """A number from 0 to 1 that depends on nothing but the key."""
    number = 0x9E3779B9
    for part in key:
        number = ((number ^ (int(part) & 0xFFFFFFFF)) * 0x85EBCA6B + 0xC2B2AE35) & 0xFFFFFFFF
        number ^= number >> 15
    return (number * 0x2C1B3C6D & 0xFFFFFFFF) / 4294967296


def noise(x, y, cells, seed):
    """Smooth noise that wraps around."""
    x, y = x * cells, y * cells
    i, j = math.floor(x), math.floor(y)
    u, v = smooth(0, 1, x - i), smooth(0, 1, y - j)
    corner = [chance((i + a) % cells, (j + b) % cells, cells, seed) for b in (0, 1) for a in (0, 1)]
    upper = corner[0] + (corner[1] - corner[0]) * u
    lower = corner[2] + (corner[3] - corner[2]) * u
    return upper + (lower - upper) * v


def clouds(x, y, cells, octaves=4, seed=0):
    """The same in several sizes; about 0.5."""
    total = weight = 0.0
    for octave in range(octaves):
        share = 0.5 ** octave
        total += share * noise(x, y, cells << octave, seed + octave)
        weight += share
    return total / weight


def relief(height, x, y, depth, step=1 / 128):
    """How light a surface of that height function is, lit from the upper left."""
    slope = height(x + step, y + step) - height(x - step, y - step)
    return clamp(1 + depth * slope, 0.35, 1.6)


# ---- Files

def bytes_of(color):
    return bytes(int(clamp(c) * 255 + 0.5) for c in color)


def png(picture):
    opaque = all(texel[3] == 1.0 for row in picture.rows for texel in row)
    channels = 3 if opaque else 4
    raw = b"".join(b"\0" + b"".join(bytes_of(t[:channels]) for t in row) for row in picture.rows)

    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data +
                struct.pack(">I", zlib.crc32(kind + data)))
    head = struct.pack(">2I5B", picture.width, picture.height, 8, 2 if opaque else 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(raw, 9)) +
            chunk(b"IEND", b""))


HOLE = 255
RAMPS = [  # the darkest and the brightest of sixteen shades
    ((0.02, 0.02, 0.02), (1.00, 1.00, 1.00)), ((0.05, 0.04, 0.03), (0.86, 0.80, 0.70)),
    ((0.06, 0.04, 0.02), (0.78, 0.58, 0.38)), ((0.08, 0.02, 0.01), (0.86, 0.46, 0.34)),
    ((0.03, 0.04, 0.06), (0.72, 0.78, 0.88)), ((0.02, 0.05, 0.02), (0.58, 0.80, 0.36)),
    ((0.04, 0.05, 0.01), (0.72, 0.72, 0.40)), ((0.01, 0.05, 0.06), (0.46, 0.86, 0.84)),
    ((0.01, 0.03, 0.10), (0.50, 0.74, 1.00)), ((0.06, 0.02, 0.08), (0.82, 0.62, 0.90)),
    ((0.10, 0.00, 0.00), (1.00, 0.30, 0.22)), ((0.20, 0.03, 0.00), (1.00, 0.72, 0.16)),
    ((0.50, 0.30, 0.02), (1.00, 1.00, 0.72)), ((0.12, 0.07, 0.05), (1.00, 0.80, 0.66)),
    ((0.00, 0.14, 0.02), (0.40, 1.00, 0.40)), ((0.04, 0.06, 0.16), (0.42, 0.48, 0.72))]
PALETTE = [mix(dark, light, i / 15) for dark, light in RAMPS for i in range(16)]
PALETTE[HOLE] = (1.0, 0.0, 1.0)
_nearest = {}


def palette():
    return b"".join(bytes_of(color) for color in PALETTE)


def index_of(color):
    key = tuple(round(c * 63) for c in color[:3])
    if key not in _nearest:
        _nearest[key] = min((sum(w * (k / 63 - b) ** 2 for w, k, b in zip((3, 5, 2), key, p)), i)
                            for i, p in enumerate(PALETTE) if i != HOLE)[1]
    return _nearest[key]


def indices(picture):
    """In colours of the palette, mixed by a fine grid; what can be seen through is the hole."""
    grid = (0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5)
    out = bytearray()
    for j, row in enumerate(picture.rows):
        for i, texel in enumerate(row):
            shift = (grid[(j % 4) * 4 + i % 4] / 15 - 0.5) / 24
            out.append(HOLE if texel[3] < 0.5 else index_of([clamp(c + shift) for c in texel[:3]]))
    return bytes(out)


def wad(pictures):
    """A package whose pictures share the palette; each comes with three smaller copies."""
    body, directory = b"", b""
    for name, picture in pictures.items():
        copies, levels = [], picture
        for _ in range(4):
            copies.append(indices(levels))
            levels = levels.half()
        offsets = [40 + sum(len(c) for c in copies[:i]) for i in range(4)]
        lump = struct.pack("<16s6I", name.encode(), picture.width, picture.height, *offsets)
        lump += b"".join(copies)
        directory += struct.pack("<3I2BH16s", 12 + len(body), len(lump), len(lump), 0x44, 0, 0,
                                 name.encode())
        body += lump
    return struct.pack("<4s2I", b"WAD2", len(pictures), 12 + len(body)) + body + directory
