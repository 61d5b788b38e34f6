# SPDX-License-Identifier: MIT
"""The textures of the sample game, each a function of the place."""
import math

from .paint import Picture, chance, clamp, clouds, mix, noise, png, relief, scaled, smooth, wad

SIZE = 128


def grain(x, y, amount, seed):
    return 1 + amount * (noise(x, y, SIZE, seed) - 0.5)


def blocks(columns, rows, shift, gap):
    """Stones in rows; of a place: how far it is from the joint (0 to 1), and which stone it is."""
    def at(x, y):
        row = math.floor(y * rows)
        along = x * columns + (shift if row % 2 else 0)
        column = math.floor(along)
        u, v = along - column, y * rows - row
        edge = min(min(u, 1 - u) / columns, min(v, 1 - v) / rows)
        return smooth(0, gap, edge), (column % columns, row % rows)
    return at


def masonry(columns, rows, shift, gap, stone, joint, depth=0.9, uneven=0.3, seed=1):
    laid = blocks(columns, rows, shift, gap)

    def height(x, y):
        return laid(x, y)[0] + 0.35 * clouds(x, y, 8, 4, seed)

    def shader(x, y):
        solid, which = laid(x, y)
        tone = 1 - uneven / 2 + uneven * chance(*which, seed)
        color = scaled(stone, tone * (0.72 + 0.56 * clouds(x, y, 8, 4, seed)))
        color = mix(joint, color, solid)
        return scaled(color, relief(height, x, y, depth) * grain(x, y, 0.12, seed))
    return shader


def planks(count, wood, seed, across=False):
    def shader(x, y):
        if across:
            x, y = y, x
        board = math.floor(x * count) % count
        u = x * count - math.floor(x * count)
        edge = smooth(0, 0.06, min(u, 1 - u))
        fibre = noise(x * 3 + board * 0.37, y * 0.25, 32, seed) * 0.6 + noise(x, y, 8, seed) * 0.4
        tone = 0.62 + 0.5 * fibre + 0.22 * (chance(board, seed) - 0.5)
        return scaled(wood, tone * (0.35 + 0.65 * edge) * grain(x, y, 0.1, seed))
    return shader


def metal(color, seed, height=None, depth=0.8):
    def shader(x, y):
        brushed = noise(x * 0.125, y, 64, seed) * 0.14 + clouds(x, y, 4, 3, seed) * 0.3
        light = relief(height, x, y, depth) if height else 1.0
        return scaled(color, (0.72 + brushed) * light * grain(x, y, 0.06, seed))
    return shader


def bump(x, y, columns, rows, radius):
    """Rivets in a grid."""
    u = (x * columns) % 1 - 0.5
    v = (y * rows) % 1 - 0.5
    return smooth(radius, radius * 0.4, math.hypot(u / columns, v / rows))


def panel(inset, low=0.02):
    """A plate with a raised frame."""
    return lambda x, y: smooth(inset, inset + low, min(x % 1, 1 - x % 1, y % 1, 1 - y % 1))


def coffers(x, y):
    u, v = (x * 2) % 1, (y * 2) % 1
    deep = smooth(0.1, 0.2, min(u, 1 - u, v, 1 - v))
    wood = planks(8, (0.50, 0.36, 0.24), 11)(x, y)

    def height(p, q):
        a, b = (p * 2) % 1, (q * 2) % 1
        return -smooth(0.1, 0.2, min(a, 1 - a, b, 1 - b))
    return scaled(wood, (1.1 - 0.45 * deep) * relief(height, x, y, 0.8))


def band(x, y):
    """A carved course of stone."""
    def height(p, q):
        rim = smooth(0, 0.05, min(q % 1, 1 - q % 1))
        diamond = abs((p * 4) % 1 - 0.5) + abs((q % 1) - 0.5)
        return rim + 0.8 * smooth(0.34, 0.28, diamond) + 0.25 * clouds(p, q, 8, 3, 21)
    tone = 0.8 + 0.4 * clouds(x, y, 8, 4, 21)
    return scaled((0.50, 0.46, 0.40), tone * relief(height, x, y, 0.9) * grain(x, y, 0.1, 21))


def fluted(x, y):
    def height(p, q):
        return 0.6 * abs(math.sin(math.pi * 8 * p)) + 0.2 * clouds(p, q, 8, 3, 31)
    veins = abs(clouds(x, y, 4, 5, 32) - 0.5)
    stone = mix((0.62, 0.56, 0.50), (0.86, 0.82, 0.76), smooth(0.0, 0.09, veins))
    return scaled(stone, relief(height, x, y, 0.5) * (0.75 + 0.25 * height(x, y)))


def steps(x, y):
    """Risers of sixteen units, worn light at their upper edge."""
    v = (y * 8) % 1
    edge = smooth(0.22, 0.0, v) - 0.9 * smooth(0.8, 1.0, v)
    tone = 0.75 + 0.35 * clouds(x, y, 8, 4, 41) + 0.3 * edge
    return scaled((0.56, 0.53, 0.49), tone * grain(x, y, 0.12, 41))


def door(x, y):
    def height(p, q):
        u = (p * 2) % 1
        leaf = smooth(0.0, 0.05, min(u, 1 - u))
        inner = smooth(0.14, 0.2, min(u, 1 - u)) * smooth(0.08, 0.12, min(q, 1 - q))
        cross = 1 if 0.46 < q < 0.54 else 0
        return leaf - 0.7 * inner * (1 - cross) + 0.5 * bump(p, q, 16, 16, 0.012) * (1 - inner)
    base = metal((0.46, 0.50, 0.56), 51, height, 0.9)(x, y)
    if 0.90 < y < 0.97:
        stripe = ((x + y * 0.5) * 12) % 1 < 0.5
        return mix(base, (0.86, 0.66, 0.10) if stripe else (0.08, 0.08, 0.08), 0.85)
    return base


def button(x, y):
    distance = math.hypot(x - 0.5, y - 0.5)
    plate = metal((0.5, 0.5, 0.52), 61, lambda p, q: panel(0.06)(p, q) +
                  bump(p, q, 1.0, 1.0, 0.0001), 0.8)(x, y)
    if distance > 0.34:
        return plate
    if distance > 0.28:
        return scaled((0.22, 0.22, 0.24), 1.2 - x - y + 0.8)
    glow = 1.3 - 1.6 * distance + 0.4 * smooth(0.16, 0.0, math.hypot(x - 0.42, y - 0.42))
    return mix((0.85, 0.10, 0.06), (1.0, 0.75, 0.55), clamp(glow - 0.9))


def crate(x, y):
    rim = min(x, 1 - x, y, 1 - y)
    brace = abs(x - y) < 0.09 and rim > 0.1

    def height(p, q):
        edge = min(p, 1 - p, q, 1 - q)
        return smooth(0.12, 0.1, edge) + (0.8 if abs(p - q) < 0.09 else 0)
    boards = planks(5, (0.62, 0.44, 0.24), 71, across=rim < 0.11 and min(x, 1 - x) > 0.11)(x, y)
    nail = bump(x, y, 8, 8, 0.012) if rim < 0.11 else 0
    tone = (1.15 if rim < 0.11 or brace else 0.8) * relief(height, x, y, 0.5) * (1 - 0.6 * nail)
    return scaled(boards, tone)


def light_panel(x, y):
    rim = min(x, 1 - x, y, 1 - y)
    if rim < 0.08:
        return metal((0.40, 0.40, 0.42), 81, panel(0.04), 0.8)(x, y)
    tube = math.exp(-((((x * 4) % 1) - 0.5) / 0.22) ** 2)
    return mix((0.86, 0.80, 0.62), (1.0, 0.99, 0.92), tube)


def glass(x, y):
    streak = smooth(0.02, 0.0, abs((x + y) % 0.5 - 0.2) - 0.03) * 0.18
    frame = min(x, 1 - x, y, 1 - y) < 0.05
    if frame:
        return metal((0.36, 0.38, 0.42), 91)(x, y) + (1.0,)
    return (0.55 + streak, 0.75 + streak, 0.82 + streak, 0.32 + streak)


def trigger(x, y):
    """A tint with a written-on look, seen through."""
    line = min((x * 4 + y * 4) % 1, 1 - (x * 4 + y * 4) % 1) < 0.08
    return (0.95, 0.62, 0.10, 0.75) if line else (0.95, 0.70, 0.25, 0.38)


def grass(x, y):
    blade = noise(x * 2, y * 0.5, 64, 101) * 0.6 + noise(x, y, 32, 102) * 0.4
    base = mix((0.16, 0.28, 0.08), (0.42, 0.54, 0.18), blade)
    dry = smooth(0.58, 0.78, clouds(x, y, 4, 3, 103))
    return mix(base, (0.52, 0.48, 0.24), 0.5 * dry)


def sand(x, y):
    def height(p, q):
        return 0.5 * math.sin(2 * math.pi * (6 * q + 1.4 * noise(p, q, 4, 112)))
    tone = 0.85 + 0.25 * clouds(x, y, 8, 4, 111)
    return scaled((0.78, 0.68, 0.48), tone * relief(height, x, y, 0.25) * grain(x, y, 0.2, 111))


def rock(x, y):
    def height(p, q):
        return 3 * abs(clouds(p, q, 4, 5, 121) - 0.5) + clouds(p, q, 8, 4, 122)
    tone = 0.7 + 0.6 * clouds(x, y, 4, 4, 123)
    return scaled((0.46, 0.42, 0.38), tone * relief(height, x, y, 1.4))


def dusk(x, y):
    cloud = smooth(0.42, 0.68, clouds(x, y, 4, 5, 131))
    rim = smooth(0.40, 0.52, clouds(x, y, 4, 5, 131)) * (1 - cloud)
    sky = mix((0.30, 0.30, 0.52), (0.22, 0.22, 0.44), noise(x, y, 2, 132))
    return mix(mix(sky, (0.96, 0.62, 0.42), 0.75 * rim), (0.62, 0.46, 0.52), 0.8 * cloud)


def scorch(x, y):
    ragged = math.hypot(x - 0.5, y - 0.5) + 0.16 * (clouds(x, y, 8, 4, 141) - 0.5)
    return (0.05, 0.04, 0.03, 0.92 * smooth(0.46, 0.12, ragged))


def crack(x, y):
    angle = math.atan2(y - 0.5, x - 0.5)
    distance = math.hypot(x - 0.5, y - 0.5)
    ray = abs(math.sin(3.5 * angle + 6 * noise(x, y, 8, 151) - 3)) * distance
    return (0.06, 0.05, 0.05, 0.95 * smooth(0.035, 0.008, ray) * smooth(0.48, 0.3, distance))


def bars(x, y):
    """Holes between crossed bars."""
    u, v = (x * 4) % 1, (y * 4) % 1
    depth = max(0.17 - abs(u - 0.5), 0.12 - abs(v - 0.5) if v else 0)
    if depth <= 0:
        return (0, 0, 0, 0)
    round_ = smooth(0, 0.15, depth)
    return metal(mix((0.20, 0.18, 0.17), (0.62, 0.58, 0.54), round_), 161)(x, y)


def vines(x, y):
    wave = 0.09 * math.sin(2 * math.pi * y + 1) + 0.05 * math.sin(6 * math.pi * y)
    stem = min(abs(((x - wave) * 2) % 1 - 0.5), 0.5)
    leaf = clouds(x, y, 8, 3, 171) - 0.9 * stem
    if stem > 0.04 and leaf < 0.28:
        return (0, 0, 0, 0)
    return scaled(mix((0.10, 0.22, 0.05), (0.40, 0.60, 0.18), noise(x, y, 32, 172)),
                  0.8 if stem <= 0.04 else 1.1)


def liquid(dark, light, seed, foam=0.0):
    def shader(x, y):
        bend = 0.06 * math.sin(2 * math.pi * (y + 0.3 * math.sin(2 * math.pi * x)))
        ripple = 1 - abs(2 * clouds((x + bend) % 1, y, 4, 4, seed) - 1)
        color = mix(dark, light, smooth(0.55, 1.0, ripple))
        return mix(color, (1, 1, 1), foam * smooth(0.93, 1.0, ripple))
    return shader


def lamp(phase):
    def shader(x, y):
        distance = math.hypot(x - 0.5, y - 0.5)
        if distance > 0.36:
            return metal((0.42, 0.38, 0.34), 181, panel(0.05), 0.8)(x, y)
        if distance > 0.31:
            return (0.16, 0.15, 0.14)
        return scaled(mix((1.0, 0.96, 0.72), (0.95, 0.55, 0.12), distance / 0.31), phase)
    return shader


def plate(x, y):
    def height(p, q):
        return panel(0.03)(p * 2, q * 2) + bump(p, q, 4, 4, 0.02) * 0.8
    rust = smooth(0.55, 0.75, clouds(x, y, 4, 4, 191))
    return mix(metal((0.44, 0.46, 0.48), 191, height, 0.7)(x, y), (0.42, 0.24, 0.12), 0.6 * rust)


def tread(x, y):
    def height(p, q):
        u, v = (p * 8) % 1, (q * 8) % 1
        turned = (math.floor(p * 8) + math.floor(q * 8)) % 2
        a, b = ((u - 0.5), (v - 0.5)) if turned else ((v - 0.5), (u - 0.5))
        return smooth(0.42, 0.3, math.hypot(a * 3.2, b))
    return metal((0.40, 0.41, 0.43), 201, height, 0.7)(x, y)


BRICK = masonry(4, 8, 0.5, 0.012, (0.58, 0.29, 0.20), (0.52, 0.48, 0.43), 0.8, 0.4, 5)
TILES = masonry(8, 8, 0, 0.008, (0.30, 0.48, 0.52), (0.62, 0.62, 0.60), 0.5, 0.3, 6)

FOLDERS = {
    "base": {
        "wall": masonry(2, 4, 0.5, 0.02, (0.60, 0.55, 0.47), (0.26, 0.24, 0.21), 0.9, 0.22, 2),
        "floor": masonry(2, 2, 0, 0.014, (0.44, 0.40, 0.37), (0.16, 0.15, 0.14), 0.7, 0.25, 3),
        "brick": BRICK, "ceiling": coffers, "trim": band, "column": fluted, "step": steps,
        "door": door, "button": button, "crate": crate, "light": light_panel, "glass": glass,
        "trigger": trigger},
    "earth": {"grass": grass, "sand": sand, "rock": rock},
    "sky": {"dusk": dusk},
    "decals": {"scorch": scorch, "crack": crack}}
PACKAGE = {
    "{grate": bars, "{vines": vines, "brick1": BRICK, "tiles1": TILES, "plate1": plate,
    "tread1": tread, "wood1": planks(4, (0.55, 0.38, 0.22), 211),
    "*water1": liquid((0.05, 0.16, 0.24), (0.26, 0.52, 0.60), 221, 0.5),
    "*slime1": liquid((0.10, 0.16, 0.02), (0.44, 0.54, 0.12), 222),
    "*lava1": liquid((0.55, 0.08, 0.00), (1.00, 0.74, 0.20), 223, 0.3),
    "+0lamp": lamp(1.0), "+1lamp": lamp(0.55)}
SMALL = {"button", "+0lamp", "+1lamp", "scorch", "crack"}


def picture(name, shader):
    size = SIZE // 2 if name in SMALL else SIZE * 2 if name == "dusk" else SIZE
    return Picture(size, size, shader)


def files():
    """Paths in the game's folder, and what they hold."""
    made = {f"textures/{folder}/{name}.png": png(picture(name, shader))
            for folder, shaders in FOLDERS.items() for name, shader in shaders.items()}
    made["sample.wad"] = wad({name: picture(name, shader) for name, shader in PACKAGE.items()})
    return made
